#pragma once

#include "kestan/overlay/abstractoverlay.h"

namespace vorrel::kestan {

class ScreenOverlaySchema;

/// An image fixed to the screen.
class KESTAN_EXPORT ScreenOverlay : public AbstractOverlay {
public:
  using ClassSchema = ScreenOverlaySchema;
  static const Schema& GetClassSchema();
  ~ScreenOverlay() override;

  void accept(FeatureVisitor& visitor) override;

protected:
  ScreenOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
