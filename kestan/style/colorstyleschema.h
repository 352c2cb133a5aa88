#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/schemat.h"
#include "kestan/style/colorstyle.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ColorStyleSchema final
    : public SchemaT<ColorStyle, NoInstancePolicy, NoDerivedPolicy> {
private:
  Enum modes_{{{0, "normal"}, {1, "random"}, {2, "inherit"}}, false};

public:
  ColorStyleSchema();

  SimpleField<Color32> color{*this, "color", OffsetOf(&ColorStyle::color_), Field::kElement};
  EnumField colorMode{*this, "colorMode", modes_, ColorStyle::kNormal,
                      OffsetOf(&ColorStyle::colorMode_), Field::kElement};
  SimpleField<bool> antialias{*this, "antialias", OffsetOf(&ColorStyle::antialias_),
                              Field::kElement};
};

extern template class SchemaT<ColorStyle, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
