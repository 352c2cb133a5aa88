#pragma once

#include "kestan/host/refptr.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/substyle.h"

namespace vorrel::kestan {

class IconStackStyleSchema;

/// Icons that are drawn one above the other.
class KESTAN_EXPORT IconStackStyle final : public SubStyle {
public:
  using ClassSchema = IconStackStyleSchema;
  static const Schema& GetClassSchema();
  /// Stands in where a style has none.
  static IconStackStyle* GetDefaultIconStackStyle();

  IconStackStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~IconStackStyle() override;

  const mmvector<RefPtr<IconStyle>>& GetIconStyles() const { return iconStyles_; }
  void AddIconStyle(IconStyle& style);

  /// True when nothing was given; the icons aren't compared.
  bool UnspecifyRedundantFields(const IconStackStyle& other);

  /// The same objects in the same order.
  bool operator==(const IconStackStyle& other) const { return iconStyles_ == other.iconStyles_; }

private:
  friend class IconStackStyleSchema;

  mmvector<RefPtr<IconStyle>> iconStyles_;
};

} // namespace vorrel::kestan
