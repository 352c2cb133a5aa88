#pragma once

#include "kestan/core/schemat.h"
#include "kestan/link/tarrowlink.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TarrowLinkSchema final
    : public SchemaT<TarrowLink, NoInstancePolicy, NoDerivedPolicy> {
public:
  TarrowLinkSchema();
};

extern template class SchemaT<TarrowLink, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
