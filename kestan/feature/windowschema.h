#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/window.h"

namespace vorrel::kestan {

class KESTAN_EXPORT WindowSchema final
    : public SchemaT<Window, NewInstancePolicy, NewDerivedPolicy> {
public:
  WindowSchema();
};

extern template class SchemaT<Window, NewInstancePolicy, NewDerivedPolicy>;

} // namespace vorrel::kestan
