#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/tour/tourprimitive.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TourPrimitiveSchema final
    : public SchemaT<TourPrimitive, NoInstancePolicy, NoDerivedPolicy> {
public:
  TourPrimitiveSchema();

  SimpleField<double> duration{*this, "duration", OffsetOf(&TourPrimitive::duration_),
                               Field::kElement};
};

extern template class SchemaT<TourPrimitive, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
