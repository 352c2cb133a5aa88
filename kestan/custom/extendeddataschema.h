#pragma once

#include "kestan/core/schemat.h"
#include "kestan/custom/extendeddata.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ExtendedDataSchema final
    : public SchemaT<ExtendedData, NoInstancePolicy, NoDerivedPolicy> {
public:
  ExtendedDataSchema();
};

extern template class SchemaT<ExtendedData, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
