#pragma once

#include "kestan/geometry/geometry.h"
#include "kestan/geometry/linearring.h"

namespace vorrel::kestan {

class PolygonSchema;

/// An area: an outer ring and any number of holes. It has no positions of its own; the coordinate
/// interface reaches its rings, the outer one first.
class KESTAN_EXPORT Polygon final : public Geometry {
public:
  using ClassSchema = PolygonSchema;
  static const Schema& GetClassSchema();

  Polygon(const KmlId& id, const QString& baseUrl);
  /// An area without holes. `feature`, which may be null, takes it unless it has a shape.
  /// `edgeFlags`, which may be null, has one flag less than there are positions.
  Polygon(AbstractFeature* feature, const mmvector<Vec3<double>>& outer,
          const unsigned char* edgeFlags, const KmlId& id, const QString& baseUrl);
  ~Polygon() override;

  LinearRing* GetOuterBoundary() const { return outerBoundary_.get(); }
  void SetOuterBoundary(LinearRing* ring);
  /// False when the ring is the present one.
  bool SetOuterBoundaryNoNotification(LinearRing* ring);

  /// The holes in their order; entries may be null.
  const mmvector<RefPtr<LinearRing>>& GetInnerBoundaries() const { return innerBoundaries_; }
  bool AddInnerBoundary(LinearRing* ring);
  /// Both insert at `index`, or move a ring that is already here; -1 appends.
  bool AddInnerBoundary(int index, LinearRing* ring);
  bool InsertInnerBoundary(int index, LinearRing* ring);
  /// Replaces the ring at `index`.
  bool SetInnerBoundary(int index, LinearRing* ring);
  bool DelInnerBoundary(int index);
  bool RemInnerBoundary(LinearRing* ring);
  /// Index of the ring, or -1.
  int FindInnerBoundary(const LinearRing* ring) const;
  void ReverseInnerBoundaryOrder();

  /// Turns the outer ring counter-clockwise and the holes clockwise.
  void MakeCounterClockwise();

  void RequireParentInheritedVisibility(bool update) override;
  void NotifyInheritedVisibilityChanged() override;
  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;
  double GetAltitudeOffset() const override;
  void SetAltitudes(const double* values, int count) override;
  void GetAltitudes(mmvector<double>& out) const override;
  void SetAltitude(double altitude) override;
  const Vec3<double>* GetCoords(int& count) const override;
  int GetCoordCount() const override;
  void NotifyCoordsChanged() override;
  /// The box of the outer ring.
  GeoBoundingBox<double> GetBBox() const override;

private:
  friend class PolygonSchema;

  template <class Visit> void ForEachRing(Visit visit) const;

  RefPtr<LinearRing> outerBoundary_;
  mmvector<RefPtr<LinearRing>> innerBoundaries_;
};

} // namespace vorrel::kestan
