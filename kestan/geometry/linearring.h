#pragma once

#include "kestan/geometry/linestring.h"

namespace vorrel::kestan {

class LinearRingSchema;

/// A closed list of positions: editing keeps the last equal to the first. A list that was read
/// open stays open until it's edited.
///
/// Edge i runs from position i to position i + 1, and may be hidden.
class KESTAN_EXPORT LinearRing final : public LineString {
public:
  using ClassSchema = LinearRingSchema;
  static const Schema& GetClassSchema();

  LinearRing(const KmlId& id, const QString& baseUrl);
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  LinearRing(AbstractFeature* feature, const KmlId& id, const QString& baseUrl);
  ~LinearRing() override;

  /// One bit an edge, true for a hidden one; null while all edges are visible.
  const mmvector<bool>* GetEdgeFlags() const;
  /// Hides the edges whose flag isn't 0. The list that is written stays as it was read.
  void SetEdgeFlags(const unsigned char* flags, int count);
  /// The indices of hidden edges as read.
  const mmvector<unsigned short>& GetHiddenEdgeList() const { return hiddenEdgeList_; }

  /// The role in a polygon; both are false for a ring without one.
  bool IsInner() const;
  bool IsOuter() const;

  virtual void SetCoordAlt(int index, double altitude);
  /// Turns as seen from above, on a flat map. True for fewer than 4 positions and for no area.
  virtual bool IsCounterClockwise() const;

  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;
  void SetCoord(int index, const Vec3<double>& coord) override;
  void SetCoordLonLat(int index, double longitude, double latitude) override;
  int AddCoord(int index, const Vec3<double>& coord) override;
  /// The closing position can't be deleted by its own index. Of two positions both go with either.
  void DelCoord(int index) override;
  /// The closing position can't be selected.
  void SetSelectedCoord(int index) override;
  bool IsRing() const override { return true; }
  void ReverseCoordOrder() override;
  /// A ring of a polygon has a box that doesn't cross the date line.
  GeoBoundingBox<double> GetBBox() const override;
  void NotifyFieldChanged(const Field& field) override;
  void NotifyOwnerChanged() override;

private:
  friend class LinearRingSchema;

  bool IsClosed() const;
  void CalculateEdgeFlags() const;

  mutable mmvector<bool> edgeFlags_;
  mmvector<unsigned short> hiddenEdgeList_;
  mutable bool counterClockwise_ : 1;
  mutable bool orientationDirty_ : 1;
  mutable bool edgesDirty_ : 1;
};

} // namespace vorrel::kestan
