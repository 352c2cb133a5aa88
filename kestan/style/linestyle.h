#pragma once

#include "kestan/host/refptr.h"
#include "kestan/style/colorstyle.h"

namespace vorrel::kestan {

class Icon;
class LineStyleSchema;

/// How lines and the outlines of areas are drawn.
class KESTAN_EXPORT LineStyle final : public ColorStyle {
public:
  using ClassSchema = LineStyleSchema;
  static const Schema& GetClassSchema();
  static void Initialize();
  static void Shutdown();
  /// Stands in where a style has none.
  static LineStyle* GetDefaultLineStyle();

  LineStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~LineStyle() override;

  /// In pixels.
  float GetWidth() const { return width_; }
  void SetWidth(float width);
  /// In metres; 0 leaves the width to the one in pixels.
  float GetPhysicalWidth() const { return physicalWidth_; }
  void SetPhysicalWidth(float metres);
  Color32 GetOuterColor() const { return outerColor_; }
  void SetOuterColor(const Color32& color);
  /// The part of the width that has the outer colour, from 0 to 1.
  float GetOuterWidth() const { return outerWidth_; }
  void SetOuterWidth(float part);
  /// The pattern of the line; null when there's none, or one without a URL.
  Icon* GetIcon() const;
  void SetIcon(Icon* icon);
  float GetRepeat() const { return repeat_; }
  void SetRepeat(float repeat);
  bool GetLabelVisibility() const { return labelVisibility_; }
  void SetLabelVisibility(bool visible);

  /// Whether labels show isn't compared: it changes no line.
  bool operator==(const LineStyle& other) const;

private:
  friend class LineStyleSchema;

  float width_ = 1.0F;
  float physicalWidth_ = 0.0F;
  Color32 outerColor_{0};
  float outerWidth_ = 0.0F;
  RefPtr<Icon> icon_;
  float repeat_ = 0.0F;
  bool labelVisibility_ = false;
};

} // namespace vorrel::kestan
