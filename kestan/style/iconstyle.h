#pragma once

#include "kestan/host/refptr.h"
#include "kestan/style/markstyle.h"

namespace vorrel::kestan {

class Icon;
class IconStyleSchema;

/// How the mark of a point is drawn.
class KESTAN_EXPORT IconStyle final : public MarkStyle {
public:
  using ClassSchema = IconStyleSchema;
  static const Schema& GetClassSchema();
  /// Stands in where a style has none.
  static IconStyle* GetDefaultIconStyle();

  /// How the icon's size follows the view; the client's.
  using ScalingMode = int;

  IconStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~IconStyle() override;

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

  /// The fields that were given. A change inside of the icon counts too.
  unsigned GetFieldsSpecified() const override;
  void SetFieldSpecified(unsigned bit, bool specified);
  /// Heading and its mode count as given together, when one of them isn't the default.
  void CleanupHeadingAndHeadingModeBits();

  bool operator==(const IconStyle& other) const;

private:
  friend class IconStyleSchema;

  const MarkFields& GetMarkFields() const override;

  RefPtr<Icon> icon_;
  ScalingMode scalingMode_ = 0;
  int stackOrder_ = 0;
};

} // namespace vorrel::kestan
