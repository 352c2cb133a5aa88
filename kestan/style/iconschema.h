#pragma once

#include "kestan/core/schemat.h"
#include "kestan/style/icon.h"

namespace vorrel::kestan {

class KESTAN_EXPORT IconSchema final : public SchemaT<Icon, NoInstancePolicy, NoDerivedPolicy> {
public:
  IconSchema();
};

extern template class SchemaT<Icon, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
