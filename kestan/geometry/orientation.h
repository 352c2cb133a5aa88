#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/vec3.h"

namespace vorrel::kestan {

class OrientationSchema;

/// How a model is turned, in degrees.
class KESTAN_EXPORT Orientation final : public SchemaObject {
public:
  using ClassSchema = OrientationSchema;
  static const Schema& GetClassSchema();
  Orientation(const KmlId& id, const QString& baseUrl);
  Orientation(double heading, double tilt, double roll, const KmlId& id, const QString& baseUrl);
  ~Orientation() override;

  /// About the axis that points up, clockwise from north.
  double GetHeading() const { return heading_; }
  /// About the axis that points east.
  double GetTilt() const { return tilt_; }
  /// About the axis that points north.
  double GetRoll() const { return roll_; }
  /// The angles about the axes: tilt, roll and heading.
  Vec3<double> GetAngles() const { return {tilt_, roll_, heading_}; }
  void SetAngles(const Vec3<double>& angles);

  unsigned GetFieldsSpecified() const override { return given_; }

private:
  friend class OrientationSchema;

  double heading_;
  double tilt_;
  double roll_;
  unsigned given_ = 0; ///< One bit a field.
};

} // namespace vorrel::kestan
