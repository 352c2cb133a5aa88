#include "kestan/spacetime/placedview.h"

#include "kestan/core/givenfield.h"
#include "kestan/core/schema.h"
#include "kestan/spacetime/extentview.h"

#include <cmath>

namespace vorrel::kestan {

namespace {

constexpr double kTolerance = 1e-6;

bool IsNear(double a, double b) { return std::fabs(a - b) <= kTolerance; }

} // namespace

PlacedView::PlacedView(const Schema& schema, const KmlId& id, const QString& baseUrl,
                       AltitudeMode mode)
    : AbstractView(schema, id, baseUrl), altitudeMode_(mode) {}

void PlacedView::SetAllGiven() {
  for (const Field* field : GetSchema().GetSerializedFields()) {
    if (const auto* number = dynamic_cast<const GivenField<double>*>(field))
      number->SetGiven(*this, true);
  }
}

void PlacedView::ContainExtents(float fovX, float fovY, double north, double south, double east,
                                double west) {
  ContainExtents(fovX, fovY, north, south, east, west, 0.0, 0.0);
}

void PlacedView::ContainExtents(float fovX, float fovY, double north, double south, double east,
                                double west, double altitude, double tilt) {
  const ExtentView view = GetExtentView(fovX, fovY, north, south, east, west, altitude);
  if (!std::isfinite(view.latitude) || !std::isfinite(view.longitude) ||
      !std::isfinite(view.range) || !std::isfinite(altitude) || !std::isfinite(tilt))
    return;
  longitude_ = view.longitude;
  latitude_ = view.latitude;
  tilt_ = tilt;
  heading_ = 0.0;
  SetDistance(altitude, view.range);
  SetAllGiven();
}

bool PlacedView::IsAltitudeAbsolute() const { return altitudeMode_ == kAbsolute; }

bool PlacedView::AlmostEqual(AbstractView* other) const {
  if (!other || &other->GetSchema() != &GetSchema())
    return false;
  const auto& view = static_cast<const PlacedView&>(*other);
  return altitudeMode_ == view.altitudeMode_ && IsNear(longitude_, view.longitude_) &&
         IsNear(latitude_, view.latitude_) && IsNear(altitude_, view.altitude_) &&
         IsNear(tilt_, view.tilt_) && IsNear(heading_, view.heading_) &&
         IsNear(GetOwnNumber(), view.GetOwnNumber());
}

} // namespace vorrel::kestan
