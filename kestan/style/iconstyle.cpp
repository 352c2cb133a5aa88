#include "kestan/style/iconstyle.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstyleschema.h"

namespace vorrel::kestan {

template class SchemaT<IconStyle, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<IconStyle>;
template class ObjArrayField<IconStyle>;

namespace {

const IconStyleSchema& Fields() { return IconStyleSchema::GetSingleton(); }

/// The tip of the pin in the default icon.
constexpr double kPinTipX = 20.0;
constexpr double kPinTipY = 2.0;

} // namespace

IconStyleSchema::IconStyleSchema()
    : SchemaT("IconStyle", &ColorStyle::GetClassSchema(), Namespace::kKml) {
  scale.SetDefault(1.0F);
  heading.SetDefault(0.0F);
  hotSpot.SetDefault({0.5, 0.5, LegacyScreenVec::kFraction, LegacyScreenVec::kFraction});
  stackOrder.SetDefault(0);
  overlappable.SetDefault(false);
}

const Schema& IconStyle::GetClassSchema() { return IconStyleSchema::GetSingleton(); }

IconStyle::IconStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : ColorStyle(GetClassSchema(), id, baseUrl), hotSpot_(Fields().hotSpot.GetDefault()) {
  FinishCreation(notify);
}

IconStyle::~IconStyle() { NotifyPreDelete(); }

void IconStyle::SetScale(float scale) { Fields().scale.CheckSet(*this, scale, specified_); }

void IconStyle::SetHeading(float heading) {
  Fields().heading.CheckSet(*this, heading, specified_);
}

void IconStyle::SetOverlappable(bool overlappable) {
  Fields().overlappable.CheckSet(*this, overlappable, specified_);
}

void IconStyle::SetHeadingMode(HeadingMode mode) {
  Fields().headingMode.CheckSet(*this, mode, specified_);
}

void IconStyle::SetFacingMode(FacingMode mode) {
  Fields().facingMode.CheckSet(*this, mode, specified_);
}

void IconStyle::SetHotSpotMode(HotSpotMode mode) {
  Fields().hotSpotMode.CheckSet(*this, mode, specified_);
}

void IconStyle::SetStackOrder(int order) { Fields().stackOrder.CheckSet(*this, order, specified_); }

Icon* IconStyle::GetIcon() const { return icon_ ? icon_.get() : Icon::GetDefaultIcon(); }

Icon* IconStyle::GetOrCreateIcon() {
  if (!icon_)
    Fields().icon.SetTypedObject(*this, Icon::CreateDefaultIcon());
  return icon_.get();
}

void IconStyle::SetIcon(Icon* icon) { Fields().icon.CheckSet(*this, icon, specified_); }

bool IconStyle::HasIcon() const { return icon_ && !icon_->GetAbsoluteUrl().isEmpty(); }

const LegacyScreenVec& IconStyle::GetHotSpot() const {
  if (const LegacyScreenVec* fixed = icon_ ? icon_->GetHotSpotOverride() : nullptr)
    return *fixed;
  if (specified_ & Fields().hotSpot.GetMaskBit())
    return hotSpot_;
  const Icon* pin = Icon::GetDefaultIcon();
  if (icon_ && icon_ != pin && !(pin && *icon_ == *pin))
    return hotSpot_;
  static const LegacyScreenVec tip{kPinTipX, kPinTipY, LegacyScreenVec::kPixels,
                                   LegacyScreenVec::kPixels};
  return tip;
}

void IconStyle::SetHotSpot(const LegacyScreenVec& hotSpot) {
  Fields().hotSpot.CheckSet(*this, hotSpot, specified_);
}

unsigned IconStyle::GetFieldsSpecified() const {
  const bool changedIcon = icon_ && icon_->GetFieldsSpecified() != 0;
  return changedIcon ? specified_ | Fields().icon.GetMaskBit() : specified_;
}

void IconStyle::SetFieldSpecified(unsigned bit, bool specified) {
  specified_ = specified ? specified_ | bit : specified_ & ~bit;
}

void IconStyle::CleanupHeadingAndHeadingModeBits() {
  const IconStyleSchema& fields = Fields();
  const bool given =
      heading_ != fields.heading.GetDefault() || headingMode_ != fields.headingMode.GetDefault();
  SetFieldSpecified(fields.heading.GetMaskBit() | fields.headingMode.GetMaskBit(), given);
}

bool IconStyle::operator==(const IconStyle& other) const {
  return *GetIcon() == *other.GetIcon() && HasEqualColors(other) && scale_ == other.scale_ &&
         heading_ == other.heading_ && hotSpot_ == other.hotSpot_ &&
         headingMode_ == other.headingMode_ && facingMode_ == other.facingMode_ &&
         hotSpotMode_ == other.hotSpotMode_ && stackOrder_ == other.stackOrder_ &&
         overlappable_ == other.overlappable_;
}

} // namespace vorrel::kestan
