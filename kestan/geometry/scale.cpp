#include "kestan/geometry/scale.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/scaleschema.h"

namespace vorrel::kestan {

template class SchemaT<Scale, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Scale>;

ScaleSchema::ScaleSchema() : SchemaT("Scale", &XYZVec3::GetClassSchema(), Namespace::kKml) {}

const Schema& Scale::GetClassSchema() { return ScaleSchema::GetSingleton(); }

Scale::Scale(const KmlId& id, const QString& baseUrl) : Scale(1.0, 1.0, 1.0, id, baseUrl) {}

Scale::Scale(double x, double y, double z, const KmlId& id, const QString& baseUrl)
    : Scale(Vec3<double>(x, y, z), id, baseUrl) {}

Scale::Scale(const Vec3<double>& factors, const KmlId& id, const QString& baseUrl)
    : XYZVec3(GetClassSchema(), factors, id, baseUrl) {
  NotifyPostCreate();
}

Scale::~Scale() { NotifyPreDelete(); }

} // namespace vorrel::kestan
