#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/style/stylemappair.h"

namespace vorrel::kestan {

/// The looks of a map. Refuses one of which the map is a part, which would close a ring.
class KESTAN_EXPORT PairsField final : public ObjArrayField<StyleMap::Pair> {
public:
  using ObjArrayField::ObjArrayField;

protected:
  bool Accepts(const SchemaObject& owner, const SchemaObject& child) const override;
};

class KESTAN_EXPORT StyleMapSchema final
    : public SchemaT<StyleMap, NewInstancePolicy, NoDerivedPolicy> {
public:
  StyleMapSchema();

  PairsField pairs{*this, QString(), StyleMap::Pair::GetClassSchema(), OffsetOf(&StyleMap::pairs_)};
};

extern template class SchemaT<StyleMap, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
