#pragma once

#include "kestan/geometry/xyzvec3.h"

namespace vorrel::kestan {

class ScaleSchema;

/// By how much a model is stretched along each of its axes.
class KESTAN_EXPORT Scale final : public XYZVec3 {
public:
  using ClassSchema = ScaleSchema;
  static const Schema& GetClassSchema();
  /// 1 along all axes.
  Scale(const KmlId& id, const QString& baseUrl);
  Scale(const Vec3<double>& factors, const KmlId& id, const QString& baseUrl);
  Scale(double x, double y, double z, const KmlId& id, const QString& baseUrl);
  ~Scale() override;
};

} // namespace vorrel::kestan
