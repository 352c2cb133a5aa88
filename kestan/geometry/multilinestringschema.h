#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/linestring.h"
#include "kestan/geometry/multilinestring.h"

namespace vorrel::kestan {

class KESTAN_EXPORT MultiLineStringSchema final
    : public SchemaT<MultiLineString, NewInstancePolicy, NoDerivedPolicy> {
public:
  MultiLineStringSchema();

  ObjArrayField<Geometry> geometries{*this, "", LineString::GetClassSchema(),
                                     OffsetOf(&MultiGeometry::geometries_)};
};

extern template class SchemaT<MultiLineString, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
