#include "kestan/custom/extendeddata.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/extendeddataschema.h"

namespace vorrel::kestan {

template class SchemaT<ExtendedData, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<ExtendedData>;

ExtendedDataSchema::ExtendedDataSchema() : SchemaT("ExtendedData", nullptr, Namespace::kKml) {}

const Schema& ExtendedData::GetClassSchema() { return ExtendedDataSchema::GetSingleton(); }

ExtendedData::ExtendedData(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

ExtendedData::~ExtendedData() = default;

// There are no items yet.
void ExtendedData::CollectSchemas(WriteState&) const {}

bool ExtendedData::FindEntityValue(const QString&, QString*) const { return false; }

} // namespace vorrel::kestan
