#include "kestan/style/markstyle.h"

#include "kestan/core/enumfield.h"
#include "kestan/core/screenvecfield.h"

namespace vorrel::kestan {

void MarkStyle::SetScale(float scale) { GetMarkFields().scale.CheckSet(*this, scale, specified_); }

void MarkStyle::SetHeading(float heading) {
  GetMarkFields().heading.CheckSet(*this, heading, specified_);
}

void MarkStyle::SetOverlappable(bool overlappable) {
  GetMarkFields().overlappable.CheckSet(*this, overlappable, specified_);
}

void MarkStyle::SetHeadingMode(HeadingMode mode) {
  GetMarkFields().headingMode.CheckSet(*this, mode, specified_);
}

void MarkStyle::SetFacingMode(FacingMode mode) {
  GetMarkFields().facingMode.CheckSet(*this, mode, specified_);
}

void MarkStyle::SetHotSpotMode(HotSpotMode mode) {
  GetMarkFields().hotSpotMode.CheckSet(*this, mode, specified_);
}

void MarkStyle::SetHotSpot(const LegacyScreenVec& hotSpot) {
  GetMarkFields().hotSpot.CheckSet(*this, hotSpot, specified_);
}

} // namespace vorrel::kestan
