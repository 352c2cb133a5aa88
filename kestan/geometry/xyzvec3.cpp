#include "kestan/geometry/xyzvec3.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/xyzvec3schema.h"

namespace vorrel::kestan {

template class SchemaT<XYZVec3, NoInstancePolicy, NoDerivedPolicy>;

XYZVec3Schema::XYZVec3Schema() : SchemaT("XYZVec3", nullptr, Namespace::kKml) {}

const Schema& XYZVec3::GetClassSchema() { return XYZVec3Schema::GetSingleton(); }

XYZVec3::XYZVec3(const Schema& schema, const Vec3<double>& vec, const KmlId& id,
                 const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl), vec_(vec) {}

void XYZVec3::SetVec(const Vec3<double>& vec) {
  const DeletionDeferrer deferrer;
  const XYZVec3Schema& fields = XYZVec3Schema::GetSingleton();
  fields.x.CheckSet(*this, vec.x);
  fields.y.CheckSet(*this, vec.y);
  fields.z.CheckSet(*this, vec.z);
}

} // namespace vorrel::kestan
