#include "kestan/style/icon.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/iconschema.h"

namespace vorrel::kestan {

template class SchemaT<Icon, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<Icon>;

IconSchema::IconSchema() : SchemaT("Icon", nullptr, Namespace::kKml) {}

const Schema& Icon::GetClassSchema() { return IconSchema::GetSingleton(); }

Icon::Icon(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

Icon::~Icon() = default;

} // namespace vorrel::kestan
