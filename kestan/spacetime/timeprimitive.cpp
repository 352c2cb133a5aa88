#include "kestan/spacetime/timeprimitive.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/timeprimitiveschema.h"

namespace vorrel::kestan {

template class SchemaT<TimePrimitive, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<TimePrimitive>;

TimePrimitiveSchema::TimePrimitiveSchema() : SchemaT("TimePrimitive", nullptr, Namespace::kKml) {}

const Schema& TimePrimitive::GetClassSchema() { return TimePrimitiveSchema::GetSingleton(); }

TimePrimitive::TimePrimitive(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

TimePrimitive::~TimePrimitive() = default;

} // namespace vorrel::kestan
