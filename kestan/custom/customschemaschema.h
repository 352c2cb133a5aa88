#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/custom/customschema.h"

namespace vorrel::kestan {

class KESTAN_EXPORT CustomSchemaSchema final
    : public SchemaT<CustomSchema, NoInstancePolicy, NoDerivedPolicy> {
public:
  CustomSchemaSchema();

  StrField name{*this, "name", OffsetOf(&CustomSchema::name_), Field::kAttribute};
};

extern template class SchemaT<CustomSchema, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
