#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/lookat.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LookAtSchema final
    : public SchemaT<LookAt, NewInstancePolicy, NoDerivedPolicy> {
public:
  LookAtSchema();

  GivenField<double> longitude{*this, "longitude", OffsetOf(&LookAt::longitude_),
                               OffsetOf(&LookAt::given_)};
  GivenField<double> latitude{*this, "latitude", OffsetOf(&LookAt::latitude_),
                              OffsetOf(&LookAt::given_)};
  GivenField<double> altitude{*this, "altitude", OffsetOf(&LookAt::altitude_),
                              OffsetOf(&LookAt::given_)};
  GivenField<double> heading{*this, "heading", OffsetOf(&LookAt::heading_),
                             OffsetOf(&LookAt::given_)};
  GivenField<double> tilt{*this, "tilt", OffsetOf(&LookAt::tilt_), OffsetOf(&LookAt::given_)};
  GivenField<double> range{*this, "range", OffsetOf(&LookAt::range_), OffsetOf(&LookAt::given_)};
  AltitudeModeEnumField altitudeMode{*this, kClampToGround, OffsetOf(&LookAt::altitudeMode_),
                                     false};
  AltitudeModeEnumField extAltitudeMode{*this, kClampToGround, OffsetOf(&LookAt::altitudeMode_),
                                        true};
};

extern template class SchemaT<LookAt, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
