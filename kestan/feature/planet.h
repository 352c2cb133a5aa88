#pragma once

#include "kestan/feature/abstractfeature.h"

namespace vorrel::kestan {

class PlanetSchema;

/// The planet itself, as a feature of its client's tree. No document makes one, and it's never
/// written.
class KESTAN_EXPORT Planet final : public AbstractFeature {
public:
  using ClassSchema = PlanetSchema;
  static const Schema& GetClassSchema();
  Planet(const KmlId& id, const QString& baseUrl);
  ~Planet() override;

  void Accept(GeometryVisitorConst* visitor) const override;
  void Accept(GeometryVisitor* visitor) override;
  void WriteKml(WriteState& state) const override;
};

} // namespace vorrel::kestan
