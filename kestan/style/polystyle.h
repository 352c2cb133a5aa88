#pragma once

#include "kestan/style/colorstyle.h"

namespace vorrel::kestan {

class PolyStyleSchema;

/// How areas are drawn.
class KESTAN_EXPORT PolyStyle final : public ColorStyle {
public:
  using ClassSchema = PolyStyleSchema;
  static const Schema& GetClassSchema();
  /// Stands in where a style has none.
  static PolyStyle* GetDefaultPolyStyle();

  PolyStyle(const KmlId& id, const QString& baseUrl, bool notify = true);
  ~PolyStyle() override;

  bool GetFill() const { return fill_; }
  void SetFill(bool fill);
  /// The outline is drawn by the line style.
  bool GetOutline() const { return outline_; }
  void SetOutline(bool outline);

  bool operator==(const PolyStyle& other) const;

private:
  friend class PolyStyleSchema;

  bool fill_ = true;
  bool outline_ = true;
};

} // namespace vorrel::kestan
