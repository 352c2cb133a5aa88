// What old documents say in a style itself moves to the sub-styles.

#include "kestan/style/styleschema.h"

namespace vorrel::kestan {

Style::Deprecated& Style::GetDeprecated() const {
  if (!deprecated_)
    deprecated_ = std::make_unique<Deprecated>();
  return *deprecated_;
}

void* Style::GetProxyStorage() const { return &GetDeprecated(); }

void Style::ApplyDeprecated(const Field& field) {
  const StyleSchema& fields = StyleSchema::GetSingleton();
  Deprecated& old = GetDeprecated();
  if (&field == &fields.icon) {
    const RefPtr<Icon> icon = old.icon ? std::move(old.icon) : Icon::CreateEmptyIcon();
    GetIconStyle()->SetIcon(icon.get());
  } else if (&field == &fields.labelColor) {
    GetLabelStyle()->setColor(old.labelColor);
  } else if (&field == &fields.labelScale) {
    GetLabelStyle()->SetScale(old.labelScale);
  } else if (&field == &fields.labelPlacement) {
    GetLabelStyle()->SetOldPlacement(static_cast<LabelStyle::Placement>(old.labelPlacement));
  } else if (&field == &fields.geomColor) {
    GetLineStyle()->setColor(old.geomColor);
    GetPolyStyle()->setColor(old.geomColor);
    GetIconStyle()->setColor(old.geomColor);
  } else if (&field == &fields.geomScale) {
    GetIconStyle()->SetScale(old.geomScale);
    GetLineStyle()->SetWidth(old.geomScale);
  } else if (&field == &fields.polyMode) {
    GetPolyStyle()->SetFill(old.polyMode != 1);
    GetPolyStyle()->SetOutline(old.polyMode == 1 || old.polyMode == 2);
  } else if (&field == &fields.falseColorGeom) {
    const auto mode = static_cast<ColorStyle::ColorMode>(old.falseColorGeom);
    GetLineStyle()->SetColorMode(mode);
    GetPolyStyle()->SetColorMode(mode);
    GetIconStyle()->SetColorMode(mode);
    GetLabelStyle()->SetColorMode(mode);
  }
}

} // namespace vorrel::kestan
