#pragma once

#include "kestan/core/altitudemodeenumfield.h"
#include "kestan/host/boundingbox.h"
#include "kestan/spacetime/latlonbox.h"

namespace vorrel::kestan {

class LatLonAltBoxSchema;

/// A box along meridians and parallels with a bottom and a top.
class KESTAN_EXPORT LatLonAltBox final : public LatLonBox {
public:
  using ClassSchema = LatLonAltBoxSchema;
  static const Schema& GetClassSchema();
  LatLonAltBox(const KmlId& id, const QString& baseUrl);
  /// In degrees, taken as they are.
  LatLonAltBox(double north, double south, double east, double west);
  ~LatLonAltBox() override;

  /// In metres.
  float GetMinAltitude() const { return minAltitude_; }
  float GetMaxAltitude() const { return maxAltitude_; }
  AltitudeMode GetAltitudeMode() const { return static_cast<AltitudeMode>(altitudeMode_); }

  /// What the client makes of the altitudes, by its terrain: in planet radii above the sea. Brings
  /// the Cartesian box up to date. What isn't finite changes nothing.
  void SetAdjustedAltitudes(float min, float max);
  float GetAdjustedMinAltitude() const { return adjustedMinAltitude_; }
  float GetAdjustedMaxAltitude() const { return adjustedMaxAltitude_; }
  /// Empty until the altitudes have been adjusted.
  const BoundingBox<float>& GetCartesianBox() const { return cartesianBox_; }

  /// True for the box that a region without one has made for itself, while nobody has changed it.
  bool StandsIn() const { return standsIn_; }

  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;

private:
  friend class LatLonAltBoxSchema;
  friend class Region;

  float minAltitude_ = 0.0F;
  float maxAltitude_ = 0.0F;
  int altitudeMode_ = kRelativeToGround;
  float adjustedMinAltitude_ = -9999.0F;
  float adjustedMaxAltitude_ = -9999.0F;
  BoundingBox<float> cartesianBox_;
  bool standsIn_ = false;
};

} // namespace vorrel::kestan
