#pragma once

#include "kestan/core/normllafield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/point.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PointSchema final : public SchemaT<Point, NewInstancePolicy, NoDerivedPolicy> {
public:
  PointSchema();

  NormLLAField coordinates{*this, "coordinates", OffsetOf(&Point::coord_), Field::kElement};
};

extern template class SchemaT<Point, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
