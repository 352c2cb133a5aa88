#pragma once

#include "kestan/core/schemat.h"
#include "kestan/spacetime/region.h"

namespace vorrel::kestan {

class KESTAN_EXPORT RegionSchema final : public SchemaT<Region, NoInstancePolicy, NoDerivedPolicy> {
public:
  RegionSchema();
};

extern template class SchemaT<Region, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
