#pragma once

#include "kestan/core/schemat.h"
#include "kestan/spacetime/timeprimitive.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TimePrimitiveSchema final
    : public SchemaT<TimePrimitive, NoInstancePolicy, NoDerivedPolicy> {
public:
  TimePrimitiveSchema();
};

extern template class SchemaT<TimePrimitive, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
