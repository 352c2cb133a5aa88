#pragma once

#include "kestan/geometry/geometry.h"

namespace vorrel::kestan {

class LineStringSchema;

/// An open list of positions. One of them may be selected, for editing.
///
/// Indices are the caller's duty where nothing else is said.
class KESTAN_EXPORT LineString : public Geometry {
public:
  using ClassSchema = LineStringSchema;
  static const Schema& GetClassSchema();

  LineString(const KmlId& id, const QString& baseUrl);
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  LineString(AbstractFeature* feature, const KmlId& id, const QString& baseUrl);
  ~LineString() override;

  float GetExtrudeWidth() const { return extrudeWidth_; }
  bool GetBeginCap() const { return beginCap_; }
  bool GetEndCap() const { return endCap_; }

  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;
  double GetAltitudeOffset() const override { return altitudeOffset_; }
  void SetAltitudes(const double* values, int count) override;
  void GetAltitudes(mmvector<double>& out) const override;
  void SetAltitude(double altitude) override;
  const Vec3<double>* GetCoords(int& count) const override;
  void SetCoords(const Vec3<double>* coords, int count) override;
  int GetCoordCount() const override { return static_cast<int>(coords_.size()); }
  void NotifyCoordsChanged() override;
  GeoBoundingBox<double> GetBBox() const override;
  void NotifyFieldChanged(const Field& field) override;

  virtual void SetAltitude(int index, double altitude);
  virtual double GetAltitude(int index) const { return At(index).z; }
  virtual Vec3<double> GetCoord(int index) const { return At(index); }
  /// Cuts the list, or appends zeros.
  virtual void SetCoordCount(int count);
  virtual void SetCoord(int index, const Vec3<double>& coord);
  /// Leaves the altitude as it is.
  virtual void SetCoordLonLat(int index, double longitude, double latitude);
  /// Inserts behind `index`, so that -1 inserts at the front and a large index at the end. Answers
  /// the new position's index.
  virtual int AddCoord(int index, const Vec3<double>& coord);
  /// Does nothing for an index out of range. The selection follows.
  virtual void DelCoord(int index);
  /// Does nothing for an index that can't be selected.
  virtual void SetSelectedCoord(int index);
  /// -1 for none.
  virtual int GetSelectedCoord() const { return selectedCoord_; }
  virtual void ResetSelection();
  virtual bool IsRing() const { return false; }
  virtual void ReverseCoordOrder();

protected:
  /// For derived classes, which announce themselves when they are whole.
  LineString(const Schema& schema, const KmlId& id, const QString& baseUrl);

  mmvector<Vec3<double>>& Coords() { return coords_; }
  Vec3<double>& At(int index) { return coords_[static_cast<std::size_t>(index)]; }
  const Vec3<double>& At(int index) const { return coords_[static_cast<std::size_t>(index)]; }
  /// Lets the selection follow an edit; no notice.
  void MoveSelection(int index) { selectedCoord_ = index; }
  /// Drops a selection that isn't below `count`; no notice.
  void ClampSelection(int count) {
    if (selectedCoord_ >= count)
      selectedCoord_ = -1;
  }
  /// The box of all positions, made anew when it's out of date.
  const GeoBoundingBox<double>& CachedBBox(bool acrossDateLine) const;

private:
  friend class LineStringSchema;

  mutable GeoBoundingBox<double> bbox_;
  mmvector<Vec3<double>> coords_;
  int selectedCoord_ = -1;
  float extrudeWidth_;
  bool beginCap_;
  bool endCap_;
  double altitudeOffset_;
};

} // namespace vorrel::kestan
