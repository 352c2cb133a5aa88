#include "kestan/style/balloonstyle.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/balloonstyleschema.h"

namespace vorrel::kestan {

template class SchemaT<BalloonStyle, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<BalloonStyle>;

namespace {

const BalloonStyleSchema& Fields() { return BalloonStyleSchema::GetSingleton(); }

/// True when the background was given under its old name only.
bool HasOldBgColor(unsigned specified) {
  return (specified & Fields().color.GetMaskBit()) != 0 &&
         (specified & Fields().bgColor.GetMaskBit()) == 0;
}

} // namespace

BalloonStyleSchema::BalloonStyleSchema() : SchemaT("BalloonStyle", nullptr, Namespace::kKml) {
  textColor.SetDefault(Color32(0xFF000000U));
  color.SetDefault(Color32());
  bgColor.SetDefault(Color32());
}

const Schema& BalloonStyle::GetClassSchema() { return BalloonStyleSchema::GetSingleton(); }

BalloonStyle::BalloonStyle(const KmlId& id, const QString& baseUrl, bool notify)
    : SubStyle(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

BalloonStyle::~BalloonStyle() { NotifyPreDelete(); }

void BalloonStyle::SetText(const QString& text) {
  text_ = text;
  Fields().text.NotifyFieldChanged(*this);
}

void BalloonStyle::SetTextColor(const Color32& color) {
  Fields().textColor.CheckSet(*this, color, specified_);
}

Color32 BalloonStyle::GetBgColor() const { return HasOldBgColor(specified_) ? color_ : bgColor_; }

void BalloonStyle::SetBgColor(const Color32& color) {
  Fields().bgColor.CheckSet(*this, color, specified_);
}

void BalloonStyle::SetDisplayMode(DisplayMode mode) {
  Fields().displayMode.CheckSet(*this, mode, specified_);
}

bool BalloonStyle::UnspecifyRedundantFields(const BalloonStyle&) { return specified_ == 0; }

void BalloonStyle::merge(const SchemaObject& a, const SchemaObject& b) {
  const DeletionDeferrer deferrer;
  SubStyle::merge(a, b);
  // An old name in `b` counts for more than a new one in `a`.
  if (HasOldBgColor(b.GetFieldsSpecified()))
    specified_ &= ~Fields().bgColor.GetMaskBit();
}

void BalloonStyle::WriteKml(WriteState& state) const {
  unsigned mask = specified_;
  if (mask & Fields().bgColor.GetMaskBit())
    mask &= ~Fields().color.GetMaskBit();
  WriteKmlFieldsSpecified(state, mask);
}

bool BalloonStyle::operator==(const BalloonStyle& other) const {
  return displayMode_ == other.displayMode_ && text_ == other.text_ &&
         GetBgColor() == other.GetBgColor() && textColor_ == other.textColor_;
}

} // namespace vorrel::kestan
