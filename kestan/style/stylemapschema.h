#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/style/stylemappair.h"

namespace vorrel::kestan {

class KESTAN_EXPORT StyleMapSchema final
    : public SchemaT<StyleMap, NewInstancePolicy, NoDerivedPolicy> {
public:
  StyleMapSchema();

  ObjArrayField<StyleMap::Pair> pairs{*this, QString(), StyleMap::Pair::GetClassSchema(),
                                      OffsetOf(&StyleMap::pairs_)};
};

extern template class SchemaT<StyleMap, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
