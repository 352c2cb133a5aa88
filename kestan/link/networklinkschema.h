#pragma once

#include "kestan/core/schemat.h"
#include "kestan/link/networklink.h"

namespace vorrel::kestan {

class KESTAN_EXPORT NetworkLinkSchema final
    : public SchemaT<NetworkLink, NoInstancePolicy, NoDerivedPolicy> {
public:
  NetworkLinkSchema();
};

extern template class SchemaT<NetworkLink, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
