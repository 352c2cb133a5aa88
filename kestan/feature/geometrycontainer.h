#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

class Geometry;
class GeometryContainerSchema;
class MultiGeometry;

/// The shapes of a shape that is made of several.
class KESTAN_EXPORT GeometryContainer final : public TypedContainer<MultiGeometry, Geometry> {
public:
  using ClassSchema = GeometryContainerSchema;
  static const Schema& GetClassSchema();
  GeometryContainer(const KmlId& id, const QString& baseUrl);
  ~GeometryContainer() override;

private:
  void Add(MultiGeometry& parent, Geometry& element) const override;
  void Remove(MultiGeometry& parent, Geometry& element) const override;
  void Insert(MultiGeometry& parent, int index, Geometry& element) const override;
  int Find(const MultiGeometry& parent, const Geometry& element) const override;
  Geometry* Get(const MultiGeometry& parent, int index) const override;
  int Count(const MultiGeometry& parent) const override;
};

} // namespace vorrel::kestan
