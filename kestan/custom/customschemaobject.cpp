#include "kestan/custom/customschemaobject.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/custom/customschemaobjectschema.h"

namespace vorrel::kestan {

template class SchemaT<CustomSchemaObject, NewInstancePolicy, NoDerivedPolicy>;

CustomSchemaObjectSchema::CustomSchemaObjectSchema()
    : SchemaT("CustomSchemaObject", nullptr, Namespace::kKml) {}

const Schema& CustomSchemaObject::GetClassSchema() {
  return CustomSchemaObjectSchema::GetSingleton();
}

CustomSchemaObject::CustomSchemaObject(const KmlId& id, const QString& baseUrl)
    : CustomSchemaObject(GetClassSchema(), id, baseUrl) {}

CustomSchemaObject::CustomSchemaObject(const Schema& schema, const KmlId& id,
                                       const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {
  NotifyPostCreate();
}

CustomSchemaObject::~CustomSchemaObject() { NotifyPreDelete(); }

} // namespace vorrel::kestan
