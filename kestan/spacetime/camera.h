#pragma once

#include "kestan/spacetime/placedview.h"

namespace vorrel::kestan {

class CameraSchema;

/// A view from a place: the eye and its attitude.
class KESTAN_EXPORT Camera final : public PlacedView {
public:
  using ClassSchema = CameraSchema;
  static const Schema& GetClassSchema();
  Camera(const KmlId& id, const QString& baseUrl);
  /// The numbers are taken as they are, also beyond the bounds of their fields.
  Camera(double longitude, double latitude, double altitude, AltitudeMode mode, double tilt,
         double heading, double roll);
  ~Camera() override;

  /// Degrees about the line of sight.
  double GetRoll() const { return roll_; }

private:
  friend class CameraSchema;

  void SetDistance(double altitude, double range) override;
  double GetOwnNumber() const override { return roll_; }

  double roll_ = 0.0;
};

} // namespace vorrel::kestan
