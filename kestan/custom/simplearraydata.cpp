#include "kestan/custom/simplearraydata.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/simplearraydataschema.h"

namespace vorrel::kestan {

template class SchemaT<SimpleArrayData, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<SimpleArrayData>;

SimpleArrayDataSchema::SimpleArrayDataSchema()
    : SchemaT("SimpleArrayData", &AbstractSimpleData::GetClassSchema(), Namespace::kExt) {
  value.SetUndefinedOffset(OffsetOf(&SimpleArrayData::samples_) + Samples::GetUndefinedOffset());
}

const Schema& SimpleArrayData::GetClassSchema() { return SimpleArrayDataSchema::GetSingleton(); }

SimpleArrayData::SimpleArrayData(const KmlId& id, const QString& baseUrl)
    : AbstractSimpleData(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

SimpleArrayData::~SimpleArrayData() { NotifyPreDelete(); }

QString SimpleArrayData::GetIndexedValue(int i) {
  return samples_.GetValue(*this, GetDeclaredType(), i);
}

void SimpleArrayData::CleanUnspecifiedValues() { samples_.Clean(*this, GetDeclaredType()); }

CustomField::Type SimpleArrayData::GetDeclaredType() const {
  const CustomField* const field = GetCustomField();
  return field ? field->GetType() : CustomField::kNoType;
}

void SimpleArrayData::SetValueInObject(SchemaObject& object) {
  const Field* const field = GetInstanceField(object);
  if (!field)
    return;
  CleanUnspecifiedValues();
  const mmvector<QString> values = samples_.values; // who hears of one may change them
  if (field->IsArray())
    field->setCount(object, 0);
  for (std::size_t i = 0; i < values.size(); ++i)
    field->fromString(object, nullptr, nullptr, values[i], static_cast<int>(i), nullptr);
}

void SimpleArrayData::NotifyFieldChanged(const Field& field) {
  if (&field == &SimpleArrayDataSchema::GetSingleton().value)
    samples_.Invalidate();
  AbstractSimpleData::NotifyFieldChanged(field);
}

} // namespace vorrel::kestan
