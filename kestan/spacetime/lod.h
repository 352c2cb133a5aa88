#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class LodSchema;

/// The size on the screen, in pixels, at which the content of a region is shown.
class KESTAN_EXPORT Lod final : public SchemaObject {
public:
  using ClassSchema = LodSchema;
  static const Schema& GetClassSchema();
  Lod(const KmlId& id, const QString& baseUrl);
  ~Lod() override;

  float GetMinLodPixels() const { return minLodPixels_; }
  /// Negative for any size.
  float GetMaxLodPixels() const { return maxLodPixels_; }
  /// Over which the content fades in and out.
  float GetMinFadeExtent() const { return minFadeExtent_; }
  float GetMaxFadeExtent() const { return maxFadeExtent_; }
  /// The feature that the content stands in for; empty for none.
  const QString& GetHrefToReplace() const { return hrefToReplace_; }
  void SetHrefToReplace(const QString& href);

private:
  friend class LodSchema;

  float minLodPixels_ = 0.0F;
  float maxLodPixels_ = -1.0F;
  float minFadeExtent_ = 0.0F;
  float maxFadeExtent_ = 0.0F;
  unsigned given_ = 0; ///< One bit a field.
  QString hrefToReplace_;
};

} // namespace vorrel::kestan
