#pragma once

#include "kestan/core/schemat.h"
#include "kestan/tour/wait.h"

namespace vorrel::kestan {

class KESTAN_EXPORT WaitSchema final : public SchemaT<Wait, NewInstancePolicy, NoDerivedPolicy> {
public:
  WaitSchema();
};

extern template class SchemaT<Wait, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
