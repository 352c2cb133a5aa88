#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/orientation.h"

namespace vorrel::kestan {

class KESTAN_EXPORT OrientationSchema final
    : public SchemaT<Orientation, NewInstancePolicy, NoDerivedPolicy> {
public:
  OrientationSchema();

  GivenField<double> heading{*this, "heading", OffsetOf(&Orientation::heading_),
                             OffsetOf(&Orientation::given_)};
  GivenField<double> tilt{*this, "tilt", OffsetOf(&Orientation::tilt_),
                          OffsetOf(&Orientation::given_)};
  GivenField<double> roll{*this, "roll", OffsetOf(&Orientation::roll_),
                          OffsetOf(&Orientation::given_)};
};

extern template class SchemaT<Orientation, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
