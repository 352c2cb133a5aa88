#pragma once

#include "kestan/spacetime/abstractxform.h"

namespace vorrel::kestan {

class LatLonBoxSchema;

/// A box along meridians and parallels. Its edges are stored in degrees.
class KESTAN_EXPORT LatLonBox : public AbstractXform {
public:
  using ClassSchema = LatLonBoxSchema;
  static const Schema& GetClassSchema();
  LatLonBox(const KmlId& id, const QString& baseUrl);
  ~LatLonBox() override;

  double GetNorth() const { return north_; }
  double GetSouth() const { return south_; }
  double GetEast() const { return east_; }
  double GetWest() const { return west_; }

  void GetCorner(Vec3<double>& out, int corner) const override;
  void GetCorners(Vec3<double>* out, int count) const override;
  void SetCorner(const Vec3<double>& position, int corner) override;
  /// Takes the box around four positions, in whatever order they are.
  void SetCorners(const Vec3<double>* positions, int count) override;
  void GetLatLonExtent(double& north, double& south, double& east, double& west) const override;
  void SetLatLonExtent(double north, double south, double east, double west, Edge edge) override;
  /// In degrees, counter-clockwise about the middle.
  virtual double GetRotation() const { return rotation_; }

protected:
  LatLonBox(const Schema& schema, const KmlId& id, const QString& baseUrl);

  double north_ = 0.0;
  double south_ = 0.0;
  double east_ = 0.0;
  double west_ = 0.0;
  unsigned given_ = 0; ///< One bit a field.

private:
  friend class LatLonBoxSchema;

  /// Normalised values, one field after the other.
  void SetEdges(double north, double south, double east, double west);

  double rotation_ = 0.0;
};

} // namespace vorrel::kestan
