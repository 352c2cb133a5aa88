#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/multigeometry.h"

namespace vorrel::kestan {

/// An older name of the element: it's read as a `MultiGeometry`, and written as one.
class KESTAN_EXPORT GeometryCollectionSchema final : public Schema {
public:
  GeometryCollectionSchema();

  RefPtr<SchemaObject> CreateInstance(const KmlId& id, const QString& baseUrl,
                                      MemoryManager* manager) const override;
  bool IsAbstract() const override { return false; }
};

class KESTAN_EXPORT MultiGeometrySchema final
    : public SchemaT<MultiGeometry, NewInstancePolicy, NoDerivedPolicy> {
public:
  MultiGeometrySchema();

  ObjArrayField<Geometry> geometries{*this, "", Geometry::GetClassSchema(),
                                     OffsetOf(&MultiGeometry::geometries_)};

private:
  GeometryCollectionSchema geometryCollection_;
};

extern template class SchemaT<MultiGeometry, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
