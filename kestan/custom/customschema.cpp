#include "kestan/custom/customschema.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/customschemaschema.h"

namespace vorrel::kestan {

template class SchemaT<CustomSchema, NoInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<CustomSchema>;

CustomSchemaSchema::CustomSchemaSchema() : SchemaT("Schema", nullptr, Namespace::kKml) {}

const Schema& CustomSchema::GetClassSchema() { return CustomSchemaSchema::GetSingleton(); }

CustomSchema::CustomSchema(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

CustomSchema::~CustomSchema() = default;

} // namespace vorrel::kestan
