#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/simplelistfield.h"
#include "kestan/geometry/linearring.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LinearRingSchema final
    : public SchemaT<LinearRing, NewInstancePolicy, NoDerivedPolicy> {
public:
  LinearRingSchema();

  SimpleListField<unsigned short> hiddenEdgeList{*this, "hiddenEdgeList",
                                                 OffsetOf(&LinearRing::hiddenEdgeList_),
                                                 Field::kElement, Field::kExtNamespace};
};

extern template class SchemaT<LinearRing, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
