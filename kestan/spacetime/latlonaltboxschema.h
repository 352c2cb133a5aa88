#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/latlonaltbox.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LatLonAltBoxSchema final
    : public SchemaT<LatLonAltBox, NewInstancePolicy, NoDerivedPolicy> {
public:
  LatLonAltBoxSchema();

  GivenField<float> minAltitude{*this, "minAltitude", OffsetOf(&LatLonAltBox::minAltitude_),
                                OffsetOf(&LatLonAltBox::given_)};
  GivenField<float> maxAltitude{*this, "maxAltitude", OffsetOf(&LatLonAltBox::maxAltitude_),
                                OffsetOf(&LatLonAltBox::given_)};
  AltitudeModeEnumField altitudeMode{*this, kRelativeToGround,
                                     OffsetOf(&LatLonAltBox::altitudeMode_), false};
  AltitudeModeEnumField extAltitudeMode{*this, kRelativeToGround,
                                        OffsetOf(&LatLonAltBox::altitudeMode_), true};
  PhantomField adjustedAltitudes{*this, "adjustedAltitudes"};
};

extern template class SchemaT<LatLonAltBox, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
