#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/experimentalfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/screenvecfield.h"
#include "kestan/core/strfield.h"
#include "kestan/style/labelstyle.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LabelStyleSchema final
    : public SchemaT<LabelStyle, NewInstancePolicy, NoDerivedPolicy> {
private:
  // The fields refer to them, so that they come first.
  std::unique_ptr<Enum> headingModes_ = NewHeadingMode(GetEnableExperimentalFields());
  std::unique_ptr<Enum> facingModes_ = NewFacingMode();
  std::unique_ptr<Enum> hotSpotModes_ = NewHotSpotMode();
  Field::Type experimental_ = GetExperimentalOverrideField(*this, Field::kElement);

public:
  LabelStyleSchema();

  /// Defaults of the class, and the names of its modes.
  HeadingMode GetHeadingMode() const { return static_cast<HeadingMode>(headingMode.GetDefault()); }
  FacingMode GetFacingMode() const { return static_cast<FacingMode>(facingMode.GetDefault()); }
  float GetHeading() const { return heading.GetDefault(); }
  const Enum& GetHeadingModeEnum() const { return *headingModes_; }
  const Enum& GetFacingModeEnum() const { return *facingModes_; }
  const Enum& GetHotSpotModeEnum() const { return *hotSpotModes_; }

  SimpleField<float> scale{*this, "scale", OffsetOf(&LabelStyle::scale_), Field::kElement};
  SimpleField<float> heading{*this, "heading", OffsetOf(&LabelStyle::heading_), Field::kElement};
  ExperimentalField<SimpleField<bool>> overlappable{*this, "overlappable",
                                                    OffsetOf(&LabelStyle::overlappable_),
                                                    experimental_, Field::kExtNamespace};
  ExperimentalField<EnumField> headingMode{*this,
                                           "headingMode",
                                           *headingModes_,
                                           kHeadingAuto,
                                           OffsetOf(&LabelStyle::headingMode_),
                                           experimental_,
                                           Field::kExtNamespace};
  ExperimentalField<EnumField> facingMode{*this,
                                          "facingMode",
                                          *facingModes_,
                                          kFacingScreenProjection,
                                          OffsetOf(&LabelStyle::facingMode_),
                                          experimental_,
                                          Field::kExtNamespace};
  ExperimentalField<EnumField> hotSpotMode{*this,
                                           "hotSpotMode",
                                           *hotSpotModes_,
                                           kHotSpotBegin,
                                           OffsetOf(&LabelStyle::hotSpotMode_),
                                           experimental_,
                                           Field::kExtNamespace};
  ExperimentalField<SimpleField<Color32>> outlineColor{*this, "outlineColor",
                                                       OffsetOf(&LabelStyle::outlineColor_),
                                                       experimental_, Field::kExtNamespace};
  StrField groupId{*this, "groupId", OffsetOf(&LabelStyle::groupId_), Field::kElement,
                   Field::kExtNamespace};
  StrField text{*this, "text", OffsetOf(&LabelStyle::text_), Field::kElement, Field::kExtNamespace};
  ScreenVecField hotSpot{*this, "hotSpot", OffsetOf(&LabelStyle::hotSpot_), Field::kElement};

  const MarkFields mark{scale,      heading,     overlappable, headingMode,
                        facingMode, hotSpotMode, hotSpot};
};

extern template class SchemaT<LabelStyle, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
