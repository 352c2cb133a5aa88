#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/globe.h"

namespace vorrel::kestan {

class KESTAN_EXPORT GlobeSchema final : public SchemaT<Globe, NewInstancePolicy, NoDerivedPolicy> {
public:
  GlobeSchema();
};

extern template class SchemaT<Globe, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
