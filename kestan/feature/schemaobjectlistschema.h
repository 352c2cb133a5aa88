#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/schemaobjectlist.h"

namespace vorrel::kestan {

class KESTAN_EXPORT SchemaObjectListSchema final
    : public SchemaT<SchemaObjectList, NewInstancePolicy, NoDerivedPolicy> {
public:
  SchemaObjectListSchema();
};

extern template class SchemaT<SchemaObjectList, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
