#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/multipoint.h"
#include "kestan/geometry/point.h"

namespace vorrel::kestan {

class KESTAN_EXPORT MultiPointSchema final
    : public SchemaT<MultiPoint, NewInstancePolicy, NoDerivedPolicy> {
public:
  MultiPointSchema();

  ObjArrayField<Geometry> geometries{*this, "", Point::GetClassSchema(),
                                     OffsetOf(&MultiGeometry::geometries_)};
};

extern template class SchemaT<MultiPoint, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
