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
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  MultiPolygon(AbstractFeature* feature, const KmlId& id, const QString& baseUrl);
  ~MultiPolygon() override;

  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;

protected:
  const Field& GetMembersField() const override;
};

} // namespace vorrel::kestan
