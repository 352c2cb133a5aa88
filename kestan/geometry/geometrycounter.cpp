#include "kestan/geometry/geometrycounter.h"

#include "kestan/feature/abstractfolder.h"
#include "kestan/feature/placemark.h"
#include "kestan/geometry/linestring.h"
#include "kestan/geometry/model.h"
#include "kestan/geometry/multigeometry.h"
#include "kestan/geometry/point.h"
#include "kestan/geometry/polygon.h"
#include "kestan/geometry/track.h"
#include "kestan/host/units.h"
#include "kestan/overlay/groundoverlay.h"   // its place counts
#include "kestan/spacetime/abstractxform.h" // likewise

#include <cmath>

namespace vorrel::kestan {

namespace {

void Join(int& common, int value) {
  if (common == GeometryCounter::kNothingSeen)
    common = value;
  else if (common != value)
    common = GeometryCounter::kMixed;
}

bool IsFinite(const Vec3<double>& p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

} // namespace

void GeometryCounter::CountGeometry(const AbstractFeature& feature) {
  // Feature visitors may change what they visit; this one doesn't.
  const_cast<AbstractFeature&>(feature).accept(*this);
}

void GeometryCounter::CountGeometry(const Geometry* geometry) {
  if (geometry)
    geometry->accept(*this);
}

void GeometryCounter::visit(AbstractFolder& folder) {
  for (int i = 0; i < folder.GetChildCount(); ++i) {
    if (AbstractFeature* const child = folder.GetChild(i))
      child->accept(*this);
  }
}

void GeometryCounter::visit(Placemark& placemark) {
  placemark.Accept(static_cast<GeometryVisitorConst*>(this));
}

void GeometryCounter::visit(ScreenOverlay&) { ++counts_[kScreenOverlay]; }

void GeometryCounter::visit(GroundOverlay& overlay) {
  ++counts_[kGroundOverlay];
  const AltitudeMode mode = overlay.GetAltitudeMode();
  if (const AbstractXform* const xform = overlay.GetXform()) {
    const double z =
        mode == kClampToGround ? 0.0 : overlay.GetAltitude() * Units::s_inv_planet_radius;
    BoundingBox<double> box({0.0, 0.0, z}, {0.0, 0.0, z});
    xform->GetLatLonExtent(box.high.y, box.low.y, box.high.x, box.low.x);
    if (IsFinite(box.low) && IsFinite(box.high))
      bounds_.add(box);
  }
  Join(commonAltitudeMode_, mode);
}

void GeometryCounter::visit(const Geometry& geometry) { UpdateModesAndBbox(geometry); }

void GeometryCounter::visit(const Point& geometry) { IncrCount(geometry, kPoint); }

void GeometryCounter::visit(const LineString& geometry) { IncrCount(geometry, kLine); }

void GeometryCounter::visit(const Polygon& geometry) { IncrCount(geometry, kPolygon); }

void GeometryCounter::visit(const MultiGeometry& geometry) {
  for (const RefPtr<Geometry>& member : geometry.GetGeometries())
    CountGeometry(member.get());
}

void GeometryCounter::visit(const Model& geometry) { IncrCount(geometry, kModel); }

void GeometryCounter::visit(const Track& geometry) { IncrCount(geometry, kTrack); }

void GeometryCounter::IncrCount(const Geometry& geometry, Type type) {
  ++counts_[type];
  if (geometry.GetAltitudeMode() != kClampToGround && geometry.GetExtrude())
    ++counts_[type + 1];
  UpdateModesAndBbox(geometry);
}

void GeometryCounter::UpdateModesAndBbox(const Geometry& geometry) {
  const int mode = geometry.GetAltitudeMode();
  GeoBoundingBox<double> box = geometry.GetBBox();
  if (!box.IsEmpty() && mode == kClampToGround) {
    box.low.z = 0.0;
    box.high.z = 0.0;
  }
  bounds_.add(box);
  Join(commonExtrude_, geometry.GetExtrude() ? 1 : 0);
  if (mode != kNothingSeen)
    Join(commonAltitudeMode_, mode);
}

} // namespace vorrel::kestan
