#include "kestan/custom/simpledata.h"

#include "kestan/core/convertfromstring.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/customfield.h"
#include "kestan/custom/schemadata.h"
#include "kestan/custom/simpledataschema.h"

namespace vorrel::kestan {

template class SchemaT<AbstractSimpleData, NoInstancePolicy, NoDerivedPolicy>;
template class SchemaT<SimpleData, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<SimpleData>;

AbstractSimpleDataSchema::AbstractSimpleDataSchema()
    : SchemaT("AbstractSimpleData", nullptr, Namespace::kKml) {}

SimpleDataSchema::SimpleDataSchema()
    : SchemaT("SimpleData", &AbstractSimpleData::GetClassSchema(), Namespace::kKml) {}

const Schema& AbstractSimpleData::GetClassSchema() {
  return AbstractSimpleDataSchema::GetSingleton();
}

AbstractSimpleData::AbstractSimpleData(const Schema& schema, const KmlId& id,
                                       const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

AbstractSimpleData::~AbstractSimpleData() = default;

void AbstractSimpleData::SetName(const QString& name) {
  AbstractSimpleDataSchema::GetSingleton().name.CheckSet(*this, name);
}

SchemaData* AbstractSimpleData::GetSchemaData() const {
  SchemaObject* const owner = GetOwner(0);
  return owner && owner->isOfType(SchemaData::GetClassSchema()) ? static_cast<SchemaData*>(owner)
                                                                : nullptr;
}

CustomField* AbstractSimpleData::GetCustomField() const {
  const SchemaData* const data = GetSchemaData();
  return data && data->GetSchema() ? data->GetSchema()->GetCustomField(name_) : nullptr;
}

QString AbstractSimpleData::GetDisplayName() const {
  const CustomField* const field = GetCustomField();
  return field ? field->GetDisplayName() : QString();
}

const Field* AbstractSimpleData::GetInstanceField(const SchemaObject& object) const {
  const CustomField* const declaration = GetCustomField();
  const Field* const field = declaration ? declaration->GetField() : nullptr;
  return field && object.isOfType(field->GetSchema()) ? field : nullptr;
}

void AbstractSimpleData::NotifyFieldChanged(const Field& field) {
  if (SchemaData* const data = GetSchemaData())
    data->NotifyValueChanged(*this);
  SchemaObject::NotifyFieldChanged(field);
}

const Schema& SimpleData::GetClassSchema() { return SimpleDataSchema::GetSingleton(); }

SimpleData::SimpleData(const KmlId& id, const QString& baseUrl)
    : AbstractSimpleData(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

SimpleData::~SimpleData() { NotifyPreDelete(); }

void SimpleData::SetValue(const QString& text) {
  SimpleDataSchema::GetSingleton().value.CheckSet(*this, text);
}

void SimpleData::SetValueInObject(SchemaObject& object) {
  const Field* const field = GetInstanceField(object);
  if (!field)
    return;
  if (field->IsArray())
    field->setCount(object, 0);
  else if (value_.isEmpty() && field->IsUndefined(object))
    return; // there's no text to keep
  field->fromString(object, nullptr, nullptr, value_, -1, nullptr);
}

FromStringResult SimpleData::fromString(const QString& text) {
  SetValue(text);
  return FromStringResult::kOk;
}

const Field* SimpleData::GetTextField() const { return &SimpleDataSchema::GetSingleton().value; }

template <> int GetTypedValueFromSimpleData(const SimpleData& data) {
  return ValueFromString<int>(data.GetValue());
}

template <> double GetTypedValueFromSimpleData(const SimpleData& data) {
  return ValueFromString<double>(data.GetValue());
}

template <> float GetTypedValueFromSimpleData(const SimpleData& data) {
  return ValueFromString<float>(data.GetValue());
}

template <> QString GetTypedValueFromSimpleData(const SimpleData& data) { return data.GetValue(); }

} // namespace vorrel::kestan
