#pragma once

#include "kestan/core/schemat.h"
#include "kestan/geometry/model.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ModelSchema final : public SchemaT<Model, NoInstancePolicy, NoDerivedPolicy> {
public:
  ModelSchema();
};

extern template class SchemaT<Model, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
