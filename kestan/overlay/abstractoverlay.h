#pragma once

#include "kestan/feature/abstractfeature.h"

namespace vorrel::kestan {

class AbstractOverlaySchema;

/// Base of the features that show an image.
class KESTAN_EXPORT AbstractOverlay : public AbstractFeature {
public:
  using ClassSchema = AbstractOverlaySchema;
  static const Schema& GetClassSchema();
  ~AbstractOverlay() override;

  void accept(FeatureVisitor& visitor) override;

protected:
  AbstractOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
