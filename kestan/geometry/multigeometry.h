#pragma once

#include "kestan/geometry/geometry.h"

namespace vorrel::kestan {

class MultiGeometrySchema;

/// A shape made of shapes, which may be collections themselves. Most operations do the same to
/// each member in its order.
class KESTAN_EXPORT MultiGeometry : public Geometry {
public:
  using ClassSchema = MultiGeometrySchema;
  static const Schema& GetClassSchema();

  MultiGeometry(const KmlId& id, const QString& baseUrl);
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  MultiGeometry(AbstractFeature* feature, const KmlId& id, const QString& baseUrl);
  ~MultiGeometry() override;

  /// The members in file order; entries may be null.
  const mmvector<RefPtr<Geometry>>& GetGeometries() const { return geometries_; }
  int GetGeometryCount() const { return static_cast<int>(geometries_.size()); }
  /// Throws `std::out_of_range` for an index out of range.
  Geometry* GetGeometry(int index) const {
    return geometries_.at(static_cast<std::size_t>(index)).get();
  }
  void ReverseGeometryOrder();

  void RequireParentInheritedVisibility(bool update) override;
  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;
  void SetAltitudeMode(AltitudeMode mode) override;
  void SetTessellate(bool tessellate) override;
  void SetExtrude(bool extrude) override;
  void SetAltitudes(const double* values, int count) override;
  void GetAltitudes(mmvector<double>& out) const override;
  void SetAltitude(double altitude) override;
  const Vec3<double>* GetCoords(int& count) const override;
  int GetCoordCount() const override;
  void NotifyCoordsChanged() override;
  GeoBoundingBox<double> GetBBox() const override;
  void NotifyFieldChanged(const Field& field) override;
  void NotifyInheritedVisibilityChanged() override;

  virtual bool AddGeometry(Geometry& geometry);
  virtual bool RemGeometry(Geometry& geometry);
  virtual bool InsertGeometry(int index, Geometry& geometry);
  virtual bool RemGeometry(int index);
  virtual bool SetGeometry(int index, Geometry& geometry);
  /// Index of the member, or -1.
  virtual int FindGeometry(const Geometry& geometry) const;

protected:
  /// For derived classes, which announce themselves when they are whole.
  MultiGeometry(const Schema& schema, const KmlId& id, const QString& baseUrl);

  /// The field of the members in the class's own schema, by which observers know them.
  virtual const Field& GetMembersField() const;

private:
  friend class MultiGeometrySchema;
  friend class MultiLineStringSchema;
  friend class MultiPointSchema;
  friend class MultiPolygonSchema;
  friend class MultiTrackSchema;

  template <class Visit> void ForEach(Visit visit) const;
  template <class Visit> void TellMembers(Visit visit) const;

  mutable GeoBoundingBox<double> bbox_;
  mmvector<RefPtr<Geometry>> geometries_;
};

} // namespace vorrel::kestan
