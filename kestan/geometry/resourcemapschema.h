#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/alias.h"
#include "kestan/geometry/resourcemap.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ResourceMapSchema final
    : public SchemaT<ResourceMap, NewInstancePolicy, NoDerivedPolicy> {
public:
  ResourceMapSchema();

  ObjArrayField<Alias> aliases{*this, "", Alias::GetClassSchema(),
                               OffsetOf(&ResourceMap::aliases_)};
};

extern template class SchemaT<ResourceMap, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
