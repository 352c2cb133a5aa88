#pragma once

#include "kestan/core/color32.h"
#include "kestan/style/substyle.h"

#include <QString>

namespace vorrel::kestan {

class BalloonStyleSchema;

/// How the balloon with the description of a feature is drawn.
class KESTAN_EXPORT BalloonStyle final : public SubStyle {
public:
  using ClassSchema = BalloonStyleSchema;
  static const Schema& GetClassSchema();
  /// Stands in where a style has none.
  static BalloonStyle* GetDefaultBalloonStyle();

  enum DisplayMode { kDisplayDefault = 0, kDisplayHide = 1, kDisplayFullscreen = 2 };

  BalloonStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~BalloonStyle() override;

  /// The text, with references to be filled in; empty for the client's own layout.
  const QString& GetText() const { return text_; }
  /// Observers hear of it also when the text stays.
  void SetText(const QString& text);
  Color32 GetTextColor() const { return textColor_; }
  void SetTextColor(const Color32& color);
  /// The background, also where it was given under its old name.
  Color32 GetBgColor() const;
  void SetBgColor(const Color32& color);
  DisplayMode GetDisplayMode() const { return static_cast<DisplayMode>(displayMode_); }
  void SetDisplayMode(DisplayMode mode);

  /// True when nothing was given; the values aren't compared.
  bool UnspecifyRedundantFields(const BalloonStyle& other);

  void merge(const SchemaObject& a, const SchemaObject& b) override;
  /// Writes the background under the name by which it counts.
  void WriteKml(WriteState& state) const override;

  bool operator==(const BalloonStyle& other) const;

private:
  friend class BalloonStyleSchema;

  QString text_;
  Color32 textColor_{0xFF000000U};
  Color32 bgColor_;
  Color32 color_; // the background in old files
  int displayMode_ = kDisplayDefault;
};

} // namespace vorrel::kestan
