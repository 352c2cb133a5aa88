#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/latlonbox.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LatLonBoxSchema final
    : public SchemaT<LatLonBox, NewInstancePolicy, NoDerivedPolicy> {
public:
  LatLonBoxSchema();

  GivenField<double> north{*this, "north", OffsetOf(&LatLonBox::north_),
                           OffsetOf(&LatLonBox::given_)};
  GivenField<double> south{*this, "south", OffsetOf(&LatLonBox::south_),
                           OffsetOf(&LatLonBox::given_)};
  GivenField<double> east{*this, "east", OffsetOf(&LatLonBox::east_), OffsetOf(&LatLonBox::given_)};
  GivenField<double> west{*this, "west", OffsetOf(&LatLonBox::west_), OffsetOf(&LatLonBox::given_)};
  SimpleField<double> rotation{*this, "rotation", OffsetOf(&LatLonBox::rotation_), Field::kElement};
};

extern template class SchemaT<LatLonBox, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
