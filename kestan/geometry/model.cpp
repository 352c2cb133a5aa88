#include "kestan/geometry/model.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/modelschema.h"

namespace vorrel::kestan {

template class SchemaT<Model, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<Model>;

ModelSchema::ModelSchema() : SchemaT("Model", &Geometry::GetClassSchema(), Namespace::kKml) {}

const Schema& Model::GetClassSchema() { return ModelSchema::GetSingleton(); }

} // namespace vorrel::kestan
