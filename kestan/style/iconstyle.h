#pragma once

#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/refptr.h"
#include "kestan/style/colorstyle.h"
#include "kestan/style/stylemodes.h"

namespace vorrel::kestan {

class Icon;
class IconStyleSchema;

/// How the mark of a point is drawn.
class KESTAN_EXPORT IconStyle final : public ColorStyle {
public:
  using ClassSchema = IconStyleSchema;
  static const Schema& GetClassSchema();
  /// Stands in where a style has none.
  static IconStyle* GetDefaultIconStyle();

  /// How the icon's size follows the view; the client's.
  using ScalingMode = int;

  IconStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~IconStyle() override;

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
  int GetStackOrder() const { return stackOrder_; }
  void SetStackOrder(int order);
  ScalingMode GetScalingMode() const { return scalingMode_; }
  void SetScalingMode(ScalingMode mode) { scalingMode_ = mode; }

  /// The icon, or the default one.
  Icon* GetIcon() const;
  /// The icon; where there's none, a new copy of the default one.
  Icon* GetOrCreateIcon();
  void SetIcon(Icon* icon);
  /// True for an icon of its own that has something to show.
  bool HasIcon() const;
  /// The point of the image that stands on the place. An icon that brings its own wins; the default
  /// icon, with nothing said, stands on the tip of its pin.
  const LegacyScreenVec& GetHotSpot() const;
  void SetHotSpot(const LegacyScreenVec& hotSpot);

  /// The fields that were given. A change inside of the icon counts too.
  unsigned GetFieldsSpecified() const override;
  void SetFieldSpecified(unsigned bit, bool specified);
  /// Heading and its mode count as given together, when one of them isn't the default.
  void CleanupHeadingAndHeadingModeBits();

  bool operator==(const IconStyle& other) const;

private:
  friend class IconStyleSchema;

  RefPtr<Icon> icon_;
  float scale_ = 1.0F;
  float heading_ = 0.0F;
  bool overlappable_ = false;
  int headingMode_ = kHeadingAuto;
  int facingMode_ = kFacingScreenProjection;
  int hotSpotMode_ = kHotSpotBegin;
  LegacyScreenVec hotSpot_;
  ScalingMode scalingMode_ = 0;
  int stackOrder_ = 0;
};

} // namespace vorrel::kestan
