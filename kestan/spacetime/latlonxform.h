#pragma once

#include "kestan/spacetime/abstractxform.h"

namespace vorrel::kestan {

class LatLonXformSchema;

/// Four free corners: the older element `LatLon`.
class KESTAN_EXPORT LatLonXform final : public AbstractXform {
public:
  using ClassSchema = LatLonXformSchema;
  static const Schema& GetClassSchema();
  LatLonXform(const KmlId& id, const QString& baseUrl);
  ~LatLonXform() override;

  void GetCorner(Vec3<double>& out, int corner) const override;
  void GetCorners(Vec3<double>* out, int count) const override;
  void SetCorner(const Vec3<double>& position, int corner) override;
  /// Takes the first four of `count`, and tells of all corners.
  void SetCorners(const Vec3<double>* positions, int count) override;
  void GetLatLonExtent(double& north, double& south, double& east, double& west) const override;
  /// Altitudes stay.
  void SetLatLonExtent(double north, double south, double east, double west, Edge edge) override;
  /// In degrees, counter-clockwise about the middle.
  virtual double GetRotation() const { return rotation_; }

private:
  friend class LatLonXformSchema;

  /// The first `taken` corners have been set.
  void Tell(int taken);

  Vec3<double> topLeft_;
  Vec3<double> topRight_;
  Vec3<double> bottomLeft_;
  Vec3<double> bottomRight_;
  unsigned given_ = 0; ///< One bit a field.
  double rotation_ = 0.0;

  /// By their numbers.
  static constexpr Vec3<double> LatLonXform::*kCorners[] = {
      &LatLonXform::topLeft_, &LatLonXform::topRight_, &LatLonXform::bottomLeft_,
      &LatLonXform::bottomRight_};
};

} // namespace vorrel::kestan
