#pragma once

#include "kestan/core/schemat.h"
#include "kestan/link/link.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LinkSchema final : public SchemaT<Link, NewInstancePolicy, NoDerivedPolicy> {
public:
  LinkSchema();
};

extern template class SchemaT<Link, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
