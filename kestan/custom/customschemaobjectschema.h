#pragma once

#include "kestan/core/schemat.h"
#include "kestan/custom/customschemaobject.h"

namespace vorrel::kestan {

class KESTAN_EXPORT CustomSchemaObjectSchema final
    : public SchemaT<CustomSchemaObject, NewInstancePolicy, NoDerivedPolicy> {
public:
  CustomSchemaObjectSchema();
};

extern template class SchemaT<CustomSchemaObject, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
