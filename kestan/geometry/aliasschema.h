#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/geometry/alias.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AliasSchema final : public SchemaT<Alias, NewInstancePolicy, NoDerivedPolicy> {
public:
  AliasSchema();

  StrField targetHref{*this, "targetHref", OffsetOf(&Alias::targetHref_), Field::kElement};
  StrField sourceHref{*this, "sourceHref", OffsetOf(&Alias::sourceHref_), Field::kElement};
};

extern template class SchemaT<Alias, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
