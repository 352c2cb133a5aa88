#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/multipolygon.h"
#include "kestan/geometry/polygon.h"

namespace vorrel::kestan {

class KESTAN_EXPORT MultiPolygonSchema final
    : public SchemaT<MultiPolygon, NewInstancePolicy, NoDerivedPolicy> {
public:
  MultiPolygonSchema();

  ObjArrayField<Geometry> geometries{*this, "", Polygon::GetClassSchema(),
                                     OffsetOf(&MultiGeometry::geometries_)};
};

extern template class SchemaT<MultiPolygon, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
