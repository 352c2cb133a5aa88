#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/style/iconstackstyle.h"

namespace vorrel::kestan {

class KESTAN_EXPORT IconStackStyleSchema final
    : public SchemaT<IconStackStyle, NewInstancePolicy, NoDerivedPolicy> {
public:
  IconStackStyleSchema();

  ObjArrayField<IconStyle> iconStyles{*this, QString(), IconStyle::GetClassSchema(),
                                      OffsetOf(&IconStackStyle::iconStyles_)};
};

extern template class SchemaT<IconStackStyle, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
