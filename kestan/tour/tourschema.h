#pragma once

#include "kestan/core/schemat.h"
#include "kestan/tour/tour.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TourSchema final : public SchemaT<Tour, NoInstancePolicy, NoDerivedPolicy> {
public:
  TourSchema();
};

extern template class SchemaT<Tour, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
