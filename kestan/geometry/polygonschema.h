#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/polygon.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PolygonSchema final
    : public SchemaT<Polygon, NewInstancePolicy, NoDerivedPolicy> {
public:
  PolygonSchema();

  ObjField<LinearRing> outerBoundaryIs{*this, "outerBoundaryIs", LinearRing::GetClassSchema(),
                                       OffsetOf(&Polygon::outerBoundary_)};
  ObjArrayField<LinearRing> innerBoundaryIs{*this, "innerBoundaryIs", LinearRing::GetClassSchema(),
                                            OffsetOf(&Polygon::innerBoundaries_)};
};

extern template class SchemaT<Polygon, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
