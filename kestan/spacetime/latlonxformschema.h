#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/latlonxform.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LatLonXformSchema final
    : public SchemaT<LatLonXform, NewInstancePolicy, NoDerivedPolicy> {
public:
  using CornerField = GivenField<Vec3<double>, NormLLAField>;

  LatLonXformSchema();

  CornerField topLeft{*this, "topLeft", OffsetOf(&LatLonXform::topLeft_),
                      OffsetOf(&LatLonXform::given_)};
  CornerField topRight{*this, "topRight", OffsetOf(&LatLonXform::topRight_),
                       OffsetOf(&LatLonXform::given_)};
  CornerField bottomLeft{*this, "bottomLeft", OffsetOf(&LatLonXform::bottomLeft_),
                         OffsetOf(&LatLonXform::given_)};
  CornerField bottomRight{*this, "bottomRight", OffsetOf(&LatLonXform::bottomRight_),
                          OffsetOf(&LatLonXform::given_)};
  SimpleField<double> rotation{*this, "rotation", OffsetOf(&LatLonXform::rotation_),
                               Field::kElement};

  /// By their numbers.
  const CornerField* const corners[4] = {&topLeft, &topRight, &bottomLeft, &bottomRight};
};

extern template class SchemaT<LatLonXform, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
