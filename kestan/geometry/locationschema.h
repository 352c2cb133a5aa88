#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/location.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LocationSchema final
    : public SchemaT<Location, NewInstancePolicy, NoDerivedPolicy> {
public:
  LocationSchema();

  GivenField<double> longitude{*this, "longitude", OffsetOf(&Location::longitude_),
                               OffsetOf(&Location::given_)};
  GivenField<double> latitude{*this, "latitude", OffsetOf(&Location::latitude_),
                              OffsetOf(&Location::given_)};
  GivenField<double> altitude{*this, "altitude", OffsetOf(&Location::altitude_),
                              OffsetOf(&Location::given_)};
};

extern template class SchemaT<Location, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
