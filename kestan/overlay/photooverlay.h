#pragma once

#include "kestan/overlay/abstractoverlay.h"

namespace vorrel::kestan {

class PhotoOverlaySchema;

/// A photo that stands in the scene.
class KESTAN_EXPORT PhotoOverlay : public AbstractOverlay {
public:
  using ClassSchema = PhotoOverlaySchema;
  static const Schema& GetClassSchema();
  ~PhotoOverlay() override;

  void accept(FeatureVisitor& visitor) override;

protected:
  PhotoOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
