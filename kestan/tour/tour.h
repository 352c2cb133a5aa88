#pragma once

#include "kestan/feature/abstractfeature.h"

namespace vorrel::kestan {

class TourSchema;

/// A scripted flight.
class KESTAN_EXPORT Tour : public AbstractFeature {
public:
  using ClassSchema = TourSchema;
  static const Schema& GetClassSchema();
  ~Tour() override;

  void accept(FeatureVisitor& visitor) override;

protected:
  Tour(const Schema& schema, const KmlId& id, const QString& baseUrl);
};

} // namespace vorrel::kestan
