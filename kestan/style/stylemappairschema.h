#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/objurlfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/style/stylemappair.h"

namespace vorrel::kestan {

class KESTAN_EXPORT StyleMapPairSchema final
    : public SchemaT<StyleMap::Pair, NewInstancePolicy, NoDerivedPolicy> {
public:
  StyleMapPairSchema();

  StrField key{*this, "key", OffsetOf(&StyleMap::Pair::key_), Field::kElement};
  ObjUrlField<StyleSelector, StyleReference> styleUrl{
      *this,           "styleUrl", OffsetOf(&StyleMap::Pair::styleUrl_),
      Field::kElement, 0,          OffsetOf(&StyleMap::Pair::reference_)};
  ObjField<StyleSelector> styleSelector{*this, QString(), StyleSelector::GetClassSchema(),
                                        OffsetOf(&StyleMap::Pair::inlineSelector_)};
};

extern template class SchemaT<StyleMap::Pair, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
