#pragma once

#include "kestan/core/experimentalfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/style/iconfield.h"
#include "kestan/style/linestyle.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LineStyleSchema final
    : public SchemaT<LineStyle, NewInstancePolicy, NoDerivedPolicy> {
public:
  LineStyleSchema();

  SimpleField<float> width{*this, "width", OffsetOf(&LineStyle::width_), Field::kElement};
  SimpleField<float> physicalWidth{*this, "physicalWidth", OffsetOf(&LineStyle::physicalWidth_),
                                   Field::kElement, Field::kExtNamespace};
  SimpleField<Color32> outerColor{*this, "outerColor", OffsetOf(&LineStyle::outerColor_),
                                  Field::kElement, Field::kExtNamespace};
  SimpleField<float> outerWidth{*this, "outerWidth", OffsetOf(&LineStyle::outerWidth_),
                                Field::kElement, Field::kExtNamespace};
  IconField icon{*this, OffsetOf(&LineStyle::icon_)};
  ExperimentalField<SimpleField<float>> repeat{*this, "repeat", OffsetOf(&LineStyle::repeat_),
                                               GetExperimentalOverrideField(*this, Field::kElement),
                                               Field::kExtNamespace};
  SimpleField<bool> labelVisibility{*this, "labelVisibility",
                                    OffsetOf(&LineStyle::labelVisibility_), Field::kElement,
                                    Field::kExtNamespace};
};

extern template class SchemaT<LineStyle, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
