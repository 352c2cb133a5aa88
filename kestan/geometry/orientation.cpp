#include "kestan/geometry/orientation.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/orientationschema.h"

namespace vorrel::kestan {

template class SchemaT<Orientation, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Orientation>;

OrientationSchema::OrientationSchema() : SchemaT("Orientation", nullptr, Namespace::kKml) {
  for (GivenField<double>* field : {&heading, &tilt, &roll})
    field->SetBounds(-360.0, 360.0);
}

const Schema& Orientation::GetClassSchema() { return OrientationSchema::GetSingleton(); }

Orientation::Orientation(const KmlId& id, const QString& baseUrl)
    : Orientation(0.0, 0.0, 0.0, id, baseUrl) {}

Orientation::Orientation(double heading, double tilt, double roll, const KmlId& id,
                         const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl), heading_(heading), tilt_(tilt), roll_(roll) {
  NotifyPostCreate();
}

Orientation::~Orientation() { NotifyPreDelete(); }

void Orientation::SetAngles(const Vec3<double>& angles) {
  const DeletionDeferrer deferrer;
  const OrientationSchema& fields = OrientationSchema::GetSingleton();
  fields.heading.CheckSet(*this, angles.z);
  fields.tilt.CheckSet(*this, angles.x);
  fields.roll.CheckSet(*this, angles.y);
}

} // namespace vorrel::kestan
