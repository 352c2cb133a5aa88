#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"

namespace vorrel::kestan {

class KESTAN_EXPORT SchemaObjectSchema final
    : public SchemaT<SchemaObject, NoInstancePolicy, NoDerivedPolicy> {
public:
  SchemaObjectSchema();

  IdField id{*this, "id", OffsetOf(&SchemaObject::id_), Field::kAttribute, Field::kNoCopy};
};

extern template class SchemaT<SchemaObject, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
