#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/style/balloonstyle.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstackstyle.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/labelstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/liststyle.h"
#include "kestan/style/polystyle.h"
#include "kestan/style/style.h"

#include <tuple>

namespace vorrel::kestan {

/// What old documents say in the style itself. It goes into the sub-styles as it's read.
struct Style::Deprecated {
  RefPtr<Icon> icon;
  Color32 labelColor;
  Color32 geomColor;
  float labelScale = 1.0F;
  float geomScale = 1.0F;
  int labelPlacement = LabelStyle::kPlacementAuto;
  int polyMode = 0;
  bool falseColorGeom = false;
};

class KESTAN_EXPORT StyleSchema final : public SchemaT<Style, NewInstancePolicy, NoDerivedPolicy> {
private:
  static constexpr unsigned kDeprecated = Field::kNoWrite | Field::kNoCopy | Field::kProxy;
  Enum placements_{{{LabelStyle::kPlacementCenter, "center"},
                    {LabelStyle::kPlacementHide, "hide"},
                    {LabelStyle::kPlacementAuto, "auto"}},
                   false};
  Enum polyModes_{{{0, "fill"}, {1, "outline"}, {2, "outlineFill"}}, false};

public:
  StyleSchema();

  ObjField<Icon> icon{*this, QString(), Icon::GetClassSchema(), OffsetOf(&Style::Deprecated::icon),
                      kDeprecated};
  SimpleField<Color32> labelColor{*this, "labelColor", OffsetOf(&Style::Deprecated::labelColor),
                                  Field::kElement, kDeprecated};
  SimpleField<Color32> geomColor{*this, "geomColor", OffsetOf(&Style::Deprecated::geomColor),
                                 Field::kElement, kDeprecated};
  SimpleField<float> labelScale{*this, "labelScale", OffsetOf(&Style::Deprecated::labelScale),
                                Field::kElement, kDeprecated};
  SimpleField<float> geomScale{*this, "geomScale", OffsetOf(&Style::Deprecated::geomScale),
                               Field::kElement, kDeprecated};
  EnumField labelPlacement{*this,
                           "labelPlacement",
                           placements_,
                           LabelStyle::kPlacementAuto,
                           OffsetOf(&Style::Deprecated::labelPlacement),
                           Field::kElement,
                           kDeprecated};
  EnumField polyMode{
      *this,           "polyMode", polyModes_, 2, OffsetOf(&Style::Deprecated::polyMode),
      Field::kElement, kDeprecated};
  SimpleField<bool> falseColorGeom{*this, "falseColorGeom",
                                   OffsetOf(&Style::Deprecated::falseColorGeom), Field::kElement,
                                   kDeprecated};
  SimpleField<int> providerId{*this, "providerId", OffsetOf(&Style::providerId_), Field::kElement,
                              Field::kNoWrite};
  ObjField<IconStyle> iconStyle{*this, QString(), IconStyle::GetClassSchema(),
                                OffsetOf(&Style::iconStyle_)};
  ObjField<LabelStyle> labelStyle{*this, QString(), LabelStyle::GetClassSchema(),
                                  OffsetOf(&Style::labelStyle_)};
  ObjField<LineStyle> lineStyle{*this, QString(), LineStyle::GetClassSchema(),
                                OffsetOf(&Style::lineStyle_)};
  ObjField<PolyStyle> polyStyle{*this, QString(), PolyStyle::GetClassSchema(),
                                OffsetOf(&Style::polyStyle_)};
  ObjField<BalloonStyle> balloonStyle{*this, QString(), BalloonStyle::GetClassSchema(),
                                      OffsetOf(&Style::balloonStyle_)};
  ObjField<ListStyle> listStyle{*this, QString(), ListStyle::GetClassSchema(),
                                OffsetOf(&Style::listStyle_)};
  ObjField<IconStackStyle> iconStackStyle{*this, QString(), IconStackStyle::GetClassSchema(),
                                          OffsetOf(&Style::iconStackStyle_)};

  /// The sub-styles in the order in which they are written: as fields, and as members.
  const Field* const written[7] = {&iconStyle, &labelStyle, &balloonStyle,  &listStyle,
                                   &lineStyle, &polyStyle,  &iconStackStyle};
  const std::tuple<RefPtr<IconStyle> Style::*, RefPtr<LabelStyle> Style::*,
                   RefPtr<BalloonStyle> Style::*, RefPtr<ListStyle> Style::*,
                   RefPtr<LineStyle> Style::*, RefPtr<PolyStyle> Style::*,
                   RefPtr<IconStackStyle> Style::*>
      parts{&Style::iconStyle_, &Style::labelStyle_, &Style::balloonStyle_,  &Style::listStyle_,
            &Style::lineStyle_, &Style::polyStyle_,  &Style::iconStackStyle_};

  /// Calls `visit(member)` for each.
  template <class Visit> void ForEachPart(Visit visit) const {
    std::apply([&](auto... member) { (visit(member), ...); }, parts);
  }
};

extern template class SchemaT<Style, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
