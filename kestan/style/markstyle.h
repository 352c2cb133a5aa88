#pragma once

#include "kestan/host/legacyscreenvec.h"
#include "kestan/style/colorstyle.h"
#include "kestan/style/stylemodes.h"

namespace vorrel::kestan {

class EnumField;
class ScreenVecField;
template <class T> class SimpleField;

/// The fields behind `MarkStyle`. Each class that derives from it has its own, in its own order.
struct MarkFields {
  const SimpleField<float>& scale;
  const SimpleField<float>& heading;
  const SimpleField<bool>& overlappable;
  const EnumField& headingMode;
  const EnumField& facingMode;
  const EnumField& hotSpotMode;
  const ScreenVecField& hotSpot;
};

/// Base of the sub-styles of what stands at a place: its size, its direction, and the point of it
/// that stands there.
class KESTAN_EXPORT MarkStyle : public ColorStyle {
public:
  float GetScale() const { return scale_; }
  void SetScale(float scale);
  /// In degrees.
  float GetHeading() const { return heading_; }
  void SetHeading(float heading);
  bool GetOverlappable() const { return overlappable_; }
  void SetOverlappable(bool overlappable);
  HeadingMode GetHeadingMode() const { return static_cast<HeadingMode>(headingMode_); }
  void SetHeadingMode(HeadingMode mode);
  FacingMode GetFacingMode() const { return static_cast<FacingMode>(facingMode_); }
  void SetFacingMode(FacingMode mode);
  HotSpotMode GetHotSpotMode() const { return static_cast<HotSpotMode>(hotSpotMode_); }
  void SetHotSpotMode(HotSpotMode mode);
  void SetHotSpot(const LegacyScreenVec& hotSpot);

protected:
  using ColorStyle::ColorStyle;

  virtual const MarkFields& GetMarkFields() const = 0;

  /// The centre.
  static constexpr LegacyScreenVec kDefaultHotSpot{0.5, 0.5, LegacyScreenVec::kFraction,
                                                   LegacyScreenVec::kFraction};

  float scale_ = 1.0F;
  float heading_ = 0.0F;
  bool overlappable_ = false;
  int headingMode_ = kHeadingAuto;
  int facingMode_ = kFacingScreenProjection;
  int hotSpotMode_ = kHotSpotBegin;
  LegacyScreenVec hotSpot_ = kDefaultHotSpot;
};

} // namespace vorrel::kestan
