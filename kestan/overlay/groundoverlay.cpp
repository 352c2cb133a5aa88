#include "kestan/overlay/groundoverlay.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/overlay/groundoverlayschema.h"
#include "kestan/spacetime/abstractview.h"

namespace vorrel::kestan {

template class SchemaT<GroundOverlay, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const GroundOverlaySchema& Fields() { return GroundOverlaySchema::GetSingleton(); }

} // namespace

GroundOverlaySchema::GroundOverlaySchema()
    : SchemaT("GroundOverlay", &AbstractOverlay::GetClassSchema(), Namespace::kKml) {
  altitude.SetDefault(0.0);
}

const Schema& GroundOverlay::GetClassSchema() { return GroundOverlaySchema::GetSingleton(); }

GroundOverlay::GroundOverlay(const KmlId& id, const QString& baseUrl)
    : AbstractOverlay(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

GroundOverlay::~GroundOverlay() { NotifyPreDelete(); }

void GroundOverlay::SetXform(AbstractXform* xform) { Fields().xform.CheckSet(*this, xform); }

void GroundOverlay::SetAltitude(double altitude) { Fields().altitude.CheckSet(*this, altitude); }

void GroundOverlay::SetAltitudeMode(AltitudeMode mode) {
  const TypedField<int>& field = Fields().extAltitudeMode;
  field.CheckSet(*this, mode);
}

void GroundOverlay::GetContainingView(float fovX, float fovY, AbstractView& view) const {
  constexpr double kDegrees = 180.0;
  if (!xform_)
    return;
  double north = 0.0;
  double south = 0.0;
  double east = 0.0;
  double west = 0.0;
  xform_->GetLatLonExtent(north, south, east, west);
  view.ContainExtents(fovX, fovY, north * kDegrees, south * kDegrees, east * kDegrees,
                      west * kDegrees);
}

void GroundOverlay::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
