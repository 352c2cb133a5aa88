#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/experimentalfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/screenvecfield.h"
#include "kestan/style/iconfield.h"
#include "kestan/style/iconstyle.h"

namespace vorrel::kestan {

class KESTAN_EXPORT IconStyleSchema final
    : public SchemaT<IconStyle, NewInstancePolicy, NoDerivedPolicy> {
private:
  // The fields refer to them, so that they come first.
  std::unique_ptr<Enum> headingModes_ = NewHeadingMode(GetEnableExperimentalFields());
  std::unique_ptr<Enum> facingModes_ = NewFacingMode();
  std::unique_ptr<Enum> hotSpotModes_ = NewHotSpotMode();
  Field::Type experimental_ = GetExperimentalOverrideField(*this, Field::kElement);

public:
  IconStyleSchema();

  SimpleField<float> scale{*this, "scale", OffsetOf(&IconStyle::scale_), Field::kElement};
  SimpleField<float> heading{*this, "heading", OffsetOf(&IconStyle::heading_), Field::kElement};
  IconField icon{*this, OffsetOf(&IconStyle::icon_)};
  ScreenVecField hotSpot{*this, "hotSpot", OffsetOf(&IconStyle::hotSpot_), Field::kElement};
  EnumField headingMode{*this,
                        "headingMode",
                        *headingModes_,
                        kHeadingAuto,
                        OffsetOf(&IconStyle::headingMode_),
                        Field::kElement,
                        Field::kExtNamespace};
  ExperimentalField<EnumField> facingMode{*this,
                                          "facingMode",
                                          *facingModes_,
                                          kFacingScreenProjection,
                                          OffsetOf(&IconStyle::facingMode_),
                                          experimental_,
                                          Field::kExtNamespace};
  ExperimentalField<EnumField> hotSpotMode{*this,
                                           "hotSpotMode",
                                           *hotSpotModes_,
                                           kHotSpotBegin,
                                           OffsetOf(&IconStyle::hotSpotMode_),
                                           experimental_,
                                           Field::kExtNamespace};
  SimpleField<int> stackOrder{*this, "stackOrder", OffsetOf(&IconStyle::stackOrder_),
                              Field::kElement, Field::kExtNamespace};
  ExperimentalField<SimpleField<bool>> overlappable{*this, "overlappable",
                                                    OffsetOf(&IconStyle::overlappable_),
                                                    experimental_, Field::kExtNamespace};

  const MarkFields mark{scale,      heading,     overlappable, headingMode,
                        facingMode, hotSpotMode, hotSpot};
};

extern template class SchemaT<IconStyle, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
