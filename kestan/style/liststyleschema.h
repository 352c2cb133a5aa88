#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/style/liststyle.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ListStyleSchema final
    : public SchemaT<ListStyle, NewInstancePolicy, NoDerivedPolicy> {
private:
  Enum listItemTypes_{
      {{1, "check"}, {2, "checkOffOnly"}, {3, "checkHideChildren"}, {5, "radioFolder"}}, false};

public:
  ListStyleSchema();

  EnumField listItemType{*this,
                         "listItemType",
                         listItemTypes_,
                         ListStyle::kCheck,
                         OffsetOf(&ListStyle::listItemType_),
                         Field::kElement};
  ObjArrayField<ItemIcon> itemIcons{*this, QString(), ItemIcon::GetClassSchema(),
                                    OffsetOf(&ListStyle::itemIcons_)};
  SimpleField<Color32> bgColor{*this, "bgColor", OffsetOf(&ListStyle::bgColor_), Field::kElement};
  SimpleField<int> maxSnippetLines{*this, "maxSnippetLines", OffsetOf(&ListStyle::maxSnippetLines_),
                                   Field::kElement};
};

extern template class SchemaT<ListStyle, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
