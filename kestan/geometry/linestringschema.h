#pragma once

#include "kestan/core/experimentalfield.h"
#include "kestan/core/normllalistfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/geometry/linestring.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LineStringSchema final
    : public SchemaT<LineString, NewInstancePolicy, NoDerivedPolicy> {
public:
  LineStringSchema();

  NormLLAListField coordinates{*this, "coordinates", OffsetOf(&LineString::coords_),
                               Field::kElement};
  SimpleField<double> altitudeOffset{*this, "altitudeOffset",
                                     OffsetOf(&LineString::altitudeOffset_), Field::kElement,
                                     Field::kExtNamespace};
  ExperimentalField<SimpleField<float>> extrudeWidth{
      *this, "extrudeWidth", OffsetOf(&LineString::extrudeWidth_),
      GetExperimentalOverrideField(*this, Field::kElement), Field::kExtNamespace};
  ExperimentalField<SimpleField<bool>> endCap{*this, "endCap", OffsetOf(&LineString::endCap_),
                                              GetExperimentalOverrideField(*this, Field::kElement),
                                              Field::kExtNamespace};
  ExperimentalField<SimpleField<bool>> beginCap{
      *this, "beginCap", OffsetOf(&LineString::beginCap_),
      GetExperimentalOverrideField(*this, Field::kElement), Field::kExtNamespace};
  PhantomField selectedCoord{*this, "selectedCoord"};
};

extern template class SchemaT<LineString, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
