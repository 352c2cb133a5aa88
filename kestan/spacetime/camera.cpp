#include "kestan/spacetime/camera.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/cameraschema.h"

namespace vorrel::kestan {

template class SchemaT<Camera, NewInstancePolicy, NoDerivedPolicy>;

CameraSchema::CameraSchema() : SchemaT("Camera", &AbstractView::GetClassSchema(), Namespace::kKml) {
  longitude.SetBounds(-180.0, 180.0);
  latitude.SetBounds(-180.0, 180.0);
  heading.SetBounds(-360.0, 360.0);
  tilt.SetBounds(0.0, 180.0);
  roll.SetBounds(-180.0, 180.0);
}

const Schema& Camera::GetClassSchema() { return CameraSchema::GetSingleton(); }

Camera::Camera(const KmlId& id, const QString& baseUrl)
    : PlacedView(GetClassSchema(), id, baseUrl, kRelativeToGround) {
  NotifyPostCreate();
}

Camera::Camera(double longitude, double latitude, double altitude, AltitudeMode mode, double tilt,
               double heading, double roll)
    : PlacedView(GetClassSchema(), KmlId(), QString(), mode) {
  longitude_ = longitude;
  latitude_ = latitude;
  altitude_ = altitude;
  tilt_ = tilt;
  heading_ = heading;
  roll_ = roll;
  SetAllGiven();
  NotifyPostCreate();
}

Camera::~Camera() { NotifyPreDelete(); }

void Camera::SetDistance(double altitude, double range) {
  altitude_ = altitude + range;
  roll_ = 0.0;
}

} // namespace vorrel::kestan
