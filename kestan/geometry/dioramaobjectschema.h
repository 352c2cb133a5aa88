#pragma once

#include "kestan/core/schemat.h"
#include "kestan/geometry/dioramaobject.h"

namespace vorrel::kestan {

class KESTAN_EXPORT DioramaObjectSchema final
    : public SchemaT<DioramaObject, NoInstancePolicy, NoDerivedPolicy> {
public:
  DioramaObjectSchema();
};

extern template class SchemaT<DioramaObject, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
