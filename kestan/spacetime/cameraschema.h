#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/camera.h"

namespace vorrel::kestan {

class KESTAN_EXPORT CameraSchema final
    : public SchemaT<Camera, NewInstancePolicy, NoDerivedPolicy> {
public:
  CameraSchema();

  GivenField<double> longitude{*this, "longitude", OffsetOf(&Camera::longitude_),
                               OffsetOf(&Camera::given_)};
  GivenField<double> latitude{*this, "latitude", OffsetOf(&Camera::latitude_),
                              OffsetOf(&Camera::given_)};
  GivenField<double> altitude{*this, "altitude", OffsetOf(&Camera::altitude_),
                              OffsetOf(&Camera::given_)};
  GivenField<double> heading{*this, "heading", OffsetOf(&Camera::heading_),
                             OffsetOf(&Camera::given_)};
  GivenField<double> tilt{*this, "tilt", OffsetOf(&Camera::tilt_), OffsetOf(&Camera::given_)};
  GivenField<double> roll{*this, "roll", OffsetOf(&Camera::roll_), OffsetOf(&Camera::given_)};
  AltitudeModeEnumField altitudeMode{*this, kRelativeToGround, OffsetOf(&Camera::altitudeMode_),
                                     false};
  AltitudeModeEnumField extAltitudeMode{*this, kRelativeToGround, OffsetOf(&Camera::altitudeMode_),
                                        true};
};

extern template class SchemaT<Camera, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
