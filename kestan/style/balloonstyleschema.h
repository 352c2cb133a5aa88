#pragma once

#include "kestan/core/cdatafield.h"
#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/schemat.h"
#include "kestan/style/balloonstyle.h"

namespace vorrel::kestan {

class KESTAN_EXPORT BalloonStyleSchema final
    : public SchemaT<BalloonStyle, NewInstancePolicy, NoDerivedPolicy> {
private:
  Enum displayModes_{{{0, "default"}, {1, "hide"}, {2, "fullscreen"}}, false};

public:
  BalloonStyleSchema();

  CdataField text{*this, "text", OffsetOf(&BalloonStyle::text_), Field::kElement};
  SimpleField<Color32> textColor{*this, "textColor", OffsetOf(&BalloonStyle::textColor_),
                                 Field::kElement};
  SimpleField<Color32> color{*this, "color", OffsetOf(&BalloonStyle::color_), Field::kElement};
  SimpleField<Color32> bgColor{*this, "bgColor", OffsetOf(&BalloonStyle::bgColor_),
                               Field::kElement};
  EnumField displayMode{*this,
                        "displayMode",
                        displayModes_,
                        BalloonStyle::kDisplayDefault,
                        OffsetOf(&BalloonStyle::displayMode_),
                        Field::kElement};
};

extern template class SchemaT<BalloonStyle, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
