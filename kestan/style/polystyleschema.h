#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/style/polystyle.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PolyStyleSchema final
    : public SchemaT<PolyStyle, NewInstancePolicy, NoDerivedPolicy> {
public:
  PolyStyleSchema();

  SimpleField<bool> fill{*this, "fill", OffsetOf(&PolyStyle::fill_), Field::kElement};
  SimpleField<bool> outline{*this, "outline", OffsetOf(&PolyStyle::outline_), Field::kElement};
};

extern template class SchemaT<PolyStyle, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
