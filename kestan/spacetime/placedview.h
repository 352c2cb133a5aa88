#pragma once

#include "kestan/spacetime/abstractview.h"

namespace vorrel::kestan {

/// What the views have in common that say themselves where they are.
class KESTAN_EXPORT PlacedView : public AbstractView {
public:
  /// In degrees.
  double GetLongitude() const { return longitude_; }
  double GetLatitude() const { return latitude_; }
  /// In metres.
  double GetAltitude() const { return altitude_; }
  /// Degrees away from straight down.
  double GetTilt() const { return tilt_; }
  /// Degrees clockwise from north.
  double GetHeading() const { return heading_; }

  void ContainExtents(float fovX, float fovY, double north, double south, double east,
                      double west) override;
  void ContainExtents(float fovX, float fovY, double north, double south, double east, double west,
                      double altitude, double tilt) override;
  bool IsAltitudeAbsolute() const override;
  AltitudeMode GetAltitudeMode() const override { return static_cast<AltitudeMode>(altitudeMode_); }
  /// Numbers may differ by a millionth, be they degrees or metres.
  bool AlmostEqual(AbstractView* other) const override;

protected:
  PlacedView(const Schema& schema, const KmlId& id, const QString& baseUrl, AltitudeMode mode);

  /// Takes the height at which the camera stands, or from which it looks, above a box at
  /// `altitude`.
  virtual void SetDistance(double altitude, double range) = 0;
  /// The number that only this class has.
  virtual double GetOwnNumber() const = 0;
  /// All numbers count as given.
  void SetAllGiven();

  double longitude_ = 0.0;
  double latitude_ = 0.0;
  double altitude_ = 0.0;
  double tilt_ = 0.0;
  double heading_ = 0.0;
  int altitudeMode_;
  unsigned given_ = 0; ///< One bit a field.
};

} // namespace vorrel::kestan
