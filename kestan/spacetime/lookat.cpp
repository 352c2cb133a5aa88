#include "kestan/spacetime/lookat.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/lookatschema.h"

namespace vorrel::kestan {

template class SchemaT<LookAt, NewInstancePolicy, NoDerivedPolicy>;

LookAtSchema::LookAtSchema() : SchemaT("LookAt", &AbstractView::GetClassSchema(), Namespace::kKml) {
  longitude.SetBounds(-180.0, 180.0);
  latitude.SetBounds(-180.0, 180.0);
  heading.SetBounds(-360.0, 360.0);
  tilt.SetBounds(0.0, 90.0);
  range.SetBounds(0.1, 6.371e8);
}

const Schema& LookAt::GetClassSchema() { return LookAtSchema::GetSingleton(); }

LookAt::LookAt(const KmlId& id, const QString& baseUrl)
    : PlacedView(GetClassSchema(), id, baseUrl, kClampToGround) {
  NotifyPostCreate();
}

LookAt::LookAt(double longitude, double latitude, double range, double tilt, double heading,
               double altitude, AltitudeMode mode)
    : PlacedView(GetClassSchema(), KmlId(), QString(), mode) {
  longitude_ = longitude;
  latitude_ = latitude;
  range_ = range;
  tilt_ = tilt;
  heading_ = heading;
  altitude_ = altitude;
  SetAllGiven();
  NotifyPostCreate();
}

LookAt::~LookAt() { NotifyPreDelete(); }

/// From far away an altitude makes no difference.
void LookAt::SetDistance(double altitude, double range) {
  constexpr double kLeastShare = 0.01;
  range_ = range;
  altitude_ = altitude / range < kLeastShare ? 0.0 : altitude;
}

} // namespace vorrel::kestan
