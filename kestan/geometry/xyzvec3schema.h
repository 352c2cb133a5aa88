#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/xyzvec3.h"

namespace vorrel::kestan {

class KESTAN_EXPORT XYZVec3Schema final
    : public SchemaT<XYZVec3, NoInstancePolicy, NoDerivedPolicy> {
public:
  XYZVec3Schema();

  GivenField<double> x{*this, "x", OffsetOf(&XYZVec3::vec_) + OffsetOf(&Vec3<double>::x),
                       OffsetOf(&XYZVec3::given_)};
  GivenField<double> y{*this, "y", OffsetOf(&XYZVec3::vec_) + OffsetOf(&Vec3<double>::y),
                       OffsetOf(&XYZVec3::given_)};
  GivenField<double> z{*this, "z", OffsetOf(&XYZVec3::vec_) + OffsetOf(&Vec3<double>::z),
                       OffsetOf(&XYZVec3::given_)};
};

extern template class SchemaT<XYZVec3, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
