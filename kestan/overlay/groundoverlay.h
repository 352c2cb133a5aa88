#pragma once

#include "kestan/overlay/abstractoverlay.h"

namespace vorrel::kestan {

class GroundOverlaySchema;

/// An image draped on the ground.
class KESTAN_EXPORT GroundOverlay : public AbstractOverlay {
public:
  using ClassSchema = GroundOverlaySchema;
  static const Schema& GetClassSchema();
  ~GroundOverlay() override;

  void accept(FeatureVisitor& visitor) override;

protected:
  GroundOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
