#pragma once

#include "kestan/core/schemat.h"
#include "kestan/link/networklinkurl.h"

namespace vorrel::kestan {

class KESTAN_EXPORT NetworkLinkUrlSchema final
    : public SchemaT<NetworkLink::Url, NewInstancePolicy, NoDerivedPolicy> {
public:
  NetworkLinkUrlSchema();
};

extern template class SchemaT<NetworkLink::Url, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
