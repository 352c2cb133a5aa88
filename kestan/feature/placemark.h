#pragma once

#include "kestan/feature/abstractfeature.h"

namespace vorrel::kestan {

class Geometry;
class PlacemarkSchema;

/// A feature with one shape, which follows what the placemark inherits.
class KESTAN_EXPORT Placemark : public AbstractFeature {
public:
  using ClassSchema = PlacemarkSchema;
  static const Schema& GetClassSchema();
  Placemark(const KmlId& id, const QString& baseUrl);
  /// For classes that derive from this one, which give the creation notice themselves.
  Placemark(const Schema& schema, const KmlId& id, const QString& baseUrl);
  ~Placemark() override;

  /// A new placemark without an id.
  static RefPtr<Placemark> CreatePlacemark();

  Geometry* GetGeometry() const { return geometry_.get(); }
  void SetGeometry(Geometry* geometry);

  void CollectStylesAndSchemas(WriteState& state) const override;
  void NotifyInheritedRegionChanged() override;
  void accept(FeatureVisitor& visitor) override;
  void Accept(GeometryVisitorConst* visitor) const override;
  void Accept(GeometryVisitor* visitor) override;
  bool GetTimeRange(DateTime& begin, DateTime& end, int* instants, int* spans) const override;
  bool IsTimedFeature() const override;
  void NotifyFieldChanged(const Field& field) override;
  void NotifyInheritedVisibilityChanged() override;
  void HandDown() override;

private:
  friend class PlacemarkSchema;

  RefPtr<Geometry> geometry_;
};

} // namespace vorrel::kestan
