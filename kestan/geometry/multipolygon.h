#pragma once

#include "kestan/geometry/multigeometry.h"

namespace vorrel::kestan {

class MultiPolygonSchema;

/// A collection of areas only.
class KESTAN_EXPORT MultiPolygon final : public MultiGeometry {
public:
  using ClassSchema = MultiPolygonSchema;
  static const Schema& GetClassSchema();

  MultiPolygon(const KmlId& id, const QString& baseUrl);
  /// `feature`, which may be null, becomes the owner at once.
  MultiPolygon(AbstractFeature* feature, const KmlId& id, const QString& baseUrl);
  ~MultiPolygon() override;

  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;

protected:
  const Field& GetMembersField() const override;
};

} // namespace vorrel::kestan
