#pragma once

#include "kestan/spacetime/placedview.h"

namespace vorrel::kestan {

class LookAtSchema;

/// A view of a place, from a distance.
class KESTAN_EXPORT LookAt final : public PlacedView {
public:
  using ClassSchema = LookAtSchema;
  static const Schema& GetClassSchema();
  LookAt(const KmlId& id, const QString& baseUrl);
  /// The numbers are taken as they are, also beyond the bounds of their fields.
  LookAt(double longitude, double latitude, double range, double tilt, double heading,
         double altitude, AltitudeMode mode);
  ~LookAt() override;

  /// Metres from the place to the eye; 0 where none was given.
  double GetRange() const { return range_; }

private:
  friend class LookAtSchema;

  void SetDistance(double altitude, double range) override;
  double GetOwnNumber() const override { return range_; }

  double range_ = 0.0;
};

} // namespace vorrel::kestan
