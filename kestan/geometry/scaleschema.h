#pragma once

#include "kestan/core/schemat.h"
#include "kestan/geometry/scale.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ScaleSchema final : public SchemaT<Scale, NewInstancePolicy, NoDerivedPolicy> {
public:
  ScaleSchema();
};

extern template class SchemaT<Scale, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
