#pragma once

#include "kestan/geometry/multigeometry.h"

namespace vorrel::kestan {

class MultiPointSchema;

/// A collection of points only.
class KESTAN_EXPORT MultiPoint final : public MultiGeometry {
public:
  using ClassSchema = MultiPointSchema;
  static const Schema& GetClassSchema();

  MultiPoint(const KmlId& id, const QString& baseUrl);
  /// The shape of `feature`, which may be null and may have one already: then it belongs to nobody.
  MultiPoint(AbstractFeature* feature, const KmlId& id, const QString& baseUrl);
  ~MultiPoint() override;

  void accept(GeometryVisitorConst& visitor) const override;
  void accept(GeometryVisitor& visitor) override;

protected:
  const Field& GetMembersField() const override;
};

} // namespace vorrel::kestan
