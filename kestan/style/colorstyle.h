#pragma once

#include "kestan/core/color32.h"
#include "kestan/style/substyle.h"

namespace vorrel::kestan {

class ColorStyleSchema;

/// Base of the sub-styles that colour something.
class KESTAN_EXPORT ColorStyle : public SubStyle {
public:
  using ClassSchema = ColorStyleSchema;
  static const Schema& GetClassSchema();

  enum ColorMode {
    kNormal = 0,
    kRandom = 1, ///< A random shade between black and the colour.
    kInherit = 2,
  };

  Color32 GetColor() const { return color_; }
  void setColor(const Color32& color);
  ColorMode GetColorMode() const { return static_cast<ColorMode>(colorMode_); }
  void SetColorMode(ColorMode mode);
  /// By the name that KML has for the mode; any other text changes nothing.
  void SetColorMode(const QString& name);
  bool GetAntialias() const { return antialias_; }
  void SetAntialias(bool antialias);

  /// Forgets that a field was given where its value is that of `other`, a style of the same class.
  /// True when nothing is left that was given.
  bool UnspecifyRedundantFields(const ColorStyle& other);

protected:
  ColorStyle(const Schema& schema, const KmlId& id, const QString& baseUrl);

  bool HasEqualColors(const ColorStyle& other) const;

private:
  friend class ColorStyleSchema;

  Color32 color_;
  int colorMode_ = kNormal;
  bool antialias_ = true;
};

} // namespace vorrel::kestan
