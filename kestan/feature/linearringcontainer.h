#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

class LinearRing;
class LinearRingContainerSchema;
class Polygon;

/// The holes of a polygon.
class KESTAN_EXPORT LinearRingContainer final : public TypedContainer<Polygon, LinearRing> {
public:
  using ClassSchema = LinearRingContainerSchema;
  static const Schema& GetClassSchema();
  LinearRingContainer(const KmlId& id, const QString& baseUrl);
  ~LinearRingContainer() override;

private:
  void Add(Polygon& parent, LinearRing& element) const override;
  void Remove(Polygon& parent, LinearRing& element) const override;
  void Insert(Polygon& parent, int index, LinearRing& element) const override;
  int Find(const Polygon& parent, const LinearRing& element) const override;
  LinearRing* Get(const Polygon& parent, int index) const override;
  int Count(const Polygon& parent) const override;
};

} // namespace vorrel::kestan
