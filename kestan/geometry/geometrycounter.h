#pragma once

#include "kestan/feature/featurevisitor.h"
#include "kestan/geometry/geoboundingbox.h"
#include "kestan/geometry/geometryvisitor.h"

namespace vorrel::kestan {

/// Statistics over a feature with all below it, or over a shape.
class KESTAN_EXPORT GeometryCounter final : public GeometryVisitorConst, public FeatureVisitor {
public:
  enum Type {
    kPoint = 2,
    kLine = 4,
    kPolygon = 6,
    kTrack = 8,
    kModel = 10,
  };
  /// Values of `GetCommonExtrude` and `GetCommonAltitudeMode` beside those of shapes.
  static constexpr int kNothingSeen = -9999;
  static constexpr int kMixed = -9998;

  void CountGeometry(const AbstractFeature& feature);
  /// Null counts nothing.
  void CountGeometry(const Geometry* geometry);

  int GetGroundOverlayCount() const { return counts_[kGroundOverlay]; }
  int GetScreenOverlayCount() const { return counts_[kScreenOverlay]; }
  int GetCount(Type type) const { return counts_[type]; }
  /// How many of the type are extruded, with an altitude mode other than `kClampToGround`.
  int GetExtrudedCount(Type type) const { return counts_[type + 1]; }
  int GetCommonExtrude() const { return commonExtrude_; }
  int GetCommonAltitudeMode() const { return commonAltitudeMode_; }
  /// The box of all that was seen. Shapes on the ground count with altitude 0.
  const GeoBoundingBox<double>& GetBounds() const { return bounds_; }

  using FeatureVisitor::visit;
  using GeometryVisitorConst::visit;
  void visit(AbstractFolder& folder) override;
  void visit(Placemark& placemark) override;
  void visit(ScreenOverlay& overlay) override;
  void visit(GroundOverlay& overlay) override;
  void visit(const Geometry& geometry) override;
  void visit(const Point& geometry) override;
  void visit(const LineString& geometry) override;
  void visit(const Polygon& geometry) override;
  void visit(const MultiGeometry& geometry) override;
  void visit(const Model& geometry) override;
  void visit(const Track& geometry) override;

private:
  // Places in `counts_`; each `Type` has two.
  static constexpr int kGroundOverlay = 0;
  static constexpr int kScreenOverlay = 1;

  void IncrCount(const Geometry& geometry, Type type);
  void UpdateModesAndBbox(const Geometry& geometry);

  int counts_[kModel + 2] = {};
  int commonExtrude_ = kNothingSeen;
  int commonAltitudeMode_ = kNothingSeen;
  GeoBoundingBox<double> bounds_;
};

} // namespace vorrel::kestan
