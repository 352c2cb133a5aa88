#pragma once

#include "kestan/core/schemat.h"
#include "kestan/spacetime/abstractview.h"

namespace vorrel::kestan {

class KESTAN_EXPORT AbstractViewSchema final
    : public SchemaT<AbstractView, NoInstancePolicy, NoDerivedPolicy> {
public:
  AbstractViewSchema();
};

extern template class SchemaT<AbstractView, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
