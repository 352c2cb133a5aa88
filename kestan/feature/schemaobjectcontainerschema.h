#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/schemaobjectcontainer.h"

namespace vorrel::kestan {

class KESTAN_EXPORT SchemaObjectContainerSchema final
    : public SchemaT<SchemaObjectContainer, NoInstancePolicy, NoDerivedPolicy> {
public:
  SchemaObjectContainerSchema();
};

extern template class SchemaT<SchemaObjectContainer, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
