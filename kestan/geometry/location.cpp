#include "kestan/geometry/location.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/geometry.h"
#include "kestan/geometry/locationschema.h"

namespace vorrel::kestan {

template class SchemaT<Location, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Location>;

LocationSchema::LocationSchema() : SchemaT("Location", nullptr, Namespace::kKml) {
  longitude.SetBounds(-180.0, 180.0);
  latitude.SetBounds(-180.0, 180.0);
}

const Schema& Location::GetClassSchema() { return LocationSchema::GetSingleton(); }

Location::Location(const KmlId& id, const QString& baseUrl)
    : Location(0.0, 0.0, 0.0, id, baseUrl) {}

Location::Location(double longitude, double latitude, double altitude, const KmlId& id,
                   const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl), longitude_(longitude), latitude_(latitude),
      altitude_(altitude) {
  NotifyPostCreate();
}

Location::~Location() { NotifyPreDelete(); }

void Location::SetLLA(const Vec3<double>& lla) {
  const DeletionDeferrer deferrer;
  const LocationSchema& fields = LocationSchema::GetSingleton();
  fields.longitude.CheckSet(*this, lla.x);
  fields.latitude.CheckSet(*this, lla.y);
  fields.altitude.CheckSet(*this, lla.z);
}

void Location::NotifyFieldChanged(const Field& field) {
  // The boxes of all shapes around it are out of date. Around one that is so already, all are.
  SchemaObject* shape = GetOwner(0);
  while (shape && shape->isOfType(Geometry::GetClassSchema())) {
    shape->SetBit(kBitGeometryDirty, true);
    shape = shape->GetOwner(0);
    if (shape && shape->GetBit(kBitGeometryDirty))
      break;
  }
  SchemaObject::NotifyFieldChanged(field);
}

} // namespace vorrel::kestan
