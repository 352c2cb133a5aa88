#pragma once

#include "kestan/core/schemat.h"
#include "kestan/theme/theme.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ThemeSchema final : public SchemaT<Theme, NoInstancePolicy, NoDerivedPolicy> {
public:
  ThemeSchema();
};

extern template class SchemaT<Theme, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
