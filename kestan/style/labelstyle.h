#pragma once

#include "kestan/style/markstyle.h"

#include <QString>

namespace vorrel::kestan {

class LabelStyleSchema;

/// How the name of a feature is drawn.
class KESTAN_EXPORT LabelStyle final : public MarkStyle {
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

  Color32 GetOutlineColor() const { return outlineColor_; }
  void SetOutlineColor(const Color32& color);
  const QString& GetGroupId() const { return groupId_; }
  void SetGroupId(const QString& id);
  /// The label, with references to be filled in.
  const QString& GetText() const { return text_; }
  void SetText(const QString& text);
  const LegacyScreenVec& GetHotSpot() const { return hotSpot_; }
  Placement GetOldPlacement() const { return static_cast<Placement>(oldPlacement_); }
  /// Isn't part of the written style, and sends no notice.
  void SetOldPlacement(Placement placement) { oldPlacement_ = placement; }

  bool operator==(const LabelStyle& other) const;

private:
  friend class LabelStyleSchema;

  const MarkFields& GetMarkFields() const override;

  Color32 outlineColor_{0xFF000000U};
  int oldPlacement_ = kPlacementAuto;
  QString groupId_;
  QString text_;
};

} // namespace vorrel::kestan
