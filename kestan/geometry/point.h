#pragma once

#include "kestan/geometry/geometry.h"

namespace vorrel::kestan {

class PointSchema;

/// A shape of one position.
class KESTAN_EXPORT Point final : public Geometry {
public:
  using ClassSchema = PointSchema;
  static const Schema& GetClassSchema();

  Point(const KmlId& id, const QString& baseUrl);
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  Point(const Vec3<double>& coord, AbstractFeature* feature, const KmlId& id,
        const QString& baseUrl);
  ~Point() override;

  const Vec3<double>& GetCoord() const { return coord_; }
  double GetLongitude() const { return coord_.x; }
  double GetLatitude() const { return coord_.y; }
  double GetAltitude() const { return coord_.z; }
  /// The setters send no notice when nothing changes.
  void SetCoord(const Vec3<double>& coord);
  void SetLongitude(double longitude);
  void SetLatitude(double latitude);

  // The list interface, with the one position as list. Setters take the first value; without a
  // value they do nothing.
  void SetLongitudes(const double* values, int count);
  void SetLatitudes(const double* values, int count);
  void GetLongitudes(mmvector<double>& out) const { out.push_back(coord_.x); }
  void GetLatitudes(mmvector<double>& out) const { out.push_back(coord_.y); }

  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;
  void SetAltitudes(const double* values, int count) override;
  void GetAltitudes(mmvector<double>& out) const override { out.push_back(coord_.z); }
  void SetAltitude(double altitude) override;
  const Vec3<double>* GetCoords(int& count) const override;
  void SetCoords(const Vec3<double>* coords, int count) override;
  int GetCoordCount() const override { return 1; }
  void NotifyCoordsChanged() override;
  GeoBoundingBox<double> GetBBox() const override;

private:
  friend class PointSchema;

  Vec3<double> coord_;
};

} // namespace vorrel::kestan
