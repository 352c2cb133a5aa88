#pragma once

#include "kestan/core/schemat.h"
#include "kestan/style/styleselector.h"

namespace vorrel::kestan {

class KESTAN_EXPORT StyleSelectorSchema final
    : public SchemaT<StyleSelector, NoInstancePolicy, NoDerivedPolicy> {
public:
  StyleSelectorSchema();
};

extern template class SchemaT<StyleSelector, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
