#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/style/itemicon.h"
#include "kestan/style/itemiconstatefield.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ItemIconSchema final
    : public SchemaT<ItemIcon, NewInstancePolicy, NoDerivedPolicy> {
private:
  Enum states_;

public:
  ItemIconSchema();

  ItemIconStateField state{*this,
                           "state",
                           states_,
                           ItemIcon::kAnyState,
                           OffsetOf(&ItemIcon::state_),
                           Field::kElement};
  StrField href{*this, "href", OffsetOf(&ItemIcon::href_), Field::kElement};
};

extern template class SchemaT<ItemIcon, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
