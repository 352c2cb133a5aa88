#pragma once

#include "kestan/host/legacyscreenvec.h"
#include "kestan/style/colorstyle.h"
#include "kestan/style/stylemodes.h"

#include <QString>

namespace vorrel::kestan {

class LabelStyleSchema;

/// How the name of a feature is drawn.
class KESTAN_EXPORT LabelStyle final : public ColorStyle {
public:
  using ClassSchema = LabelStyleSchema;
  static const Schema& GetClassSchema();
  static void Initialize();
  static void Shutdown();
  /// Stands in where a style has none.
  static LabelStyle* GetDefaultLabelStyle();

  /// Where old files put the label.
  enum Placement { kPlacementCenter = 0, kPlacementHide = 1, kPlacementAuto = 2 };

  LabelStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~LabelStyle() override;

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
  Color32 GetOutlineColor() const { return outlineColor_; }
  void SetOutlineColor(const Color32& color);
  const QString& GetGroupId() const { return groupId_; }
  void SetGroupId(const QString& id);
  /// The label, with references to be filled in.
  const QString& GetText() const { return text_; }
  void SetText(const QString& text);
  const LegacyScreenVec& GetHotSpot() const { return hotSpot_; }
  void SetHotSpot(const LegacyScreenVec& hotSpot);
  Placement GetOldPlacement() const { return static_cast<Placement>(oldPlacement_); }
  /// Isn't part of the written style, and sends no notice.
  void SetOldPlacement(Placement placement) { oldPlacement_ = placement; }

  bool operator==(const LabelStyle& other) const;

private:
  friend class LabelStyleSchema;

  int headingMode_ = kHeadingAuto;
  int facingMode_ = kFacingScreenProjection;
  int hotSpotMode_ = kHotSpotBegin;
  LegacyScreenVec hotSpot_;
  float heading_ = 0.0F;
  float scale_ = 1.0F;
  bool overlappable_ = false;
  Color32 outlineColor_;
  int oldPlacement_ = kPlacementAuto;
  QString groupId_;
  QString text_;
};

} // namespace vorrel::kestan
