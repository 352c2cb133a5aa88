#include "kestan/custom/arraydata.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/arraydataschema.h"

namespace vorrel::kestan {

template class SchemaT<ArrayData, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<ArrayData>;

ArrayDataSchema::ArrayDataSchema()
    : SchemaT("ArrayData", &AbstractData::GetClassSchema(), Namespace::kExt) {
  value.SetUndefinedOffset(OffsetOf(&ArrayData::samples_) + Samples::GetUndefinedOffset());
}

const Schema& ArrayData::GetClassSchema() { return ArrayDataSchema::GetSingleton(); }

ArrayData::ArrayData(const KmlId& id, const QString& baseUrl)
    : AbstractData(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

ArrayData::~ArrayData() { NotifyPreDelete(); }

QString ArrayData::GetIndexedValue(int i) {
  return samples_.GetValue(*this, CustomField::kNoType, i);
}

void ArrayData::CleanUnspecifiedValues() { samples_.Clean(*this, CustomField::kNoType); }

void ArrayData::NotifyFieldChanged(const Field& field) {
  if (&field == &ArrayDataSchema::GetSingleton().value)
    samples_.Invalidate();
  AbstractData::NotifyFieldChanged(field);
}

} // namespace vorrel::kestan
