#include "kestan/custom/data.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/dataschema.h"

namespace vorrel::kestan {

template class SchemaT<AbstractData, NoInstancePolicy, NoDerivedPolicy>;
template class SchemaT<Data, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<Data>;

AbstractDataSchema::AbstractDataSchema() : SchemaT("AbstractData", nullptr, Namespace::kKml) {}

DataSchema::DataSchema() : SchemaT("Data", &AbstractData::GetClassSchema(), Namespace::kKml) {}

const Schema& AbstractData::GetClassSchema() { return AbstractDataSchema::GetSingleton(); }

AbstractData::AbstractData(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

AbstractData::~AbstractData() = default;

void AbstractData::SetName(const QString& name) {
  AbstractDataSchema::GetSingleton().name.CheckSet(*this, name);
}

void AbstractData::SetDisplayName(const QString& text) {
  AbstractDataSchema::GetSingleton().displayName.CheckSet(*this, text);
}

const Schema& Data::GetClassSchema() { return DataSchema::GetSingleton(); }

Data::Data(const KmlId& id, const QString& baseUrl) : AbstractData(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Data::~Data() { NotifyPreDelete(); }

void Data::SetValue(const QString& text) { DataSchema::GetSingleton().value.CheckSet(*this, text); }

FromStringResult Data::fromString(const QString& text) {
  SetValue(text);
  return FromStringResult::kOk;
}

const Field* Data::GetTextField() const { return &DataSchema::GetSingleton().value; }

} // namespace vorrel::kestan
