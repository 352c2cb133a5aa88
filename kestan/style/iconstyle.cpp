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
  hotSpot.SetDefault(IconStyle::kDefaultHotSpot);
  stackOrder.SetDefault(0);
  overlappable.SetDefault(false);
}

const Schema& IconStyle::GetClassSchema() { return IconStyleSchema::GetSingleton(); }

IconStyle::IconStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : MarkStyle(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

IconStyle::~IconStyle() { NotifyPreDelete(); }

const MarkFields& IconStyle::GetMarkFields() const { return Fields().mark; }

void IconStyle::SetStackOrder(int order) { Fields().stackOrder.CheckSet(*this, order, specified_); }

Icon* IconStyle::GetIcon() const { return icon_ ? icon_.get() : Icon::GetDefaultIcon(); }

Icon* IconStyle::GetOrCreateIcon() {
  if (!icon_) {
    // References that it's given are those of the document.
    const RefPtr<Icon> icon(new Icon(KmlId(QString(), GetUrl()), GetBaseUrl()));
    icon->copy(*Icon::GetDefaultIcon(), true, nullptr);
    Fields().icon.SetTypedObject(*this, icon);
  }
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

unsigned IconStyle::GetFieldsSpecified() const {
  const bool changedIcon = icon_ && icon_->GetFieldsSpecified() != 0;
  return changedIcon ? specified_ | Fields().icon.GetMaskBit() : specified_;
}

void IconStyle::SetFieldSpecified(unsigned bit, bool specified) {
  SetSpecified(specified ? specified_ | bit : specified_ & ~bit);
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
