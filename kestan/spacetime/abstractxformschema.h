#pragma once

#include "kestan/core/schemat.h"
#include "kestan/spacetime/abstractxform.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractXformSchema final
    : public SchemaT<AbstractXform, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractXformSchema();
};

extern template class SchemaT<AbstractXform, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
