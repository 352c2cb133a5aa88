#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/vec3.h"

namespace vorrel::kestan {

class LocationSchema;

/// Where a model stands: degrees, and metres.
class KESTAN_EXPORT Location final : public SchemaObject {
public:
  using ClassSchema = LocationSchema;
  static const Schema& GetClassSchema();
  Location(const KmlId& id, const QString& baseUrl);
  Location(double longitude, double latitude, double altitude, const KmlId& id,
           const QString& baseUrl);
  ~Location() override;

  double GetLongitude() const { return longitude_; }
  double GetLatitude() const { return latitude_; }
  double GetAltitude() const { return altitude_; }
  /// Longitude, latitude and altitude.
  Vec3<double> GetLLA() const { return {longitude_, latitude_, altitude_}; }
  void SetLLA(const Vec3<double>& lla);

  unsigned GetFieldsSpecified() const override { return given_; }
  void NotifyFieldChanged(const Field& field) override;

private:
  friend class LocationSchema;

  double longitude_;
  double latitude_;
  double altitude_;
  unsigned given_ = 0; ///< One bit a field.
};

} // namespace vorrel::kestan
