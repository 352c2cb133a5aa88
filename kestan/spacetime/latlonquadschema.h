#pragma once

#include "kestan/core/normllalistfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/latlonquad.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LatLonQuadSchema final
    : public SchemaT<LatLonQuad, NewInstancePolicy, NoDerivedPolicy> {
public:
  LatLonQuadSchema();

  NormLLAListField coordinates{*this, "coordinates", OffsetOf(&LatLonQuad::coordinates_),
                               Field::kElement, Field::kKmlNamespace};
};

extern template class SchemaT<LatLonQuad, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
