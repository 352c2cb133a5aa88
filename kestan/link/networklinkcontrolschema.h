#pragma once

#include "kestan/core/schemat.h"
#include "kestan/link/networklinkcontrol.h"

namespace vorrel::kestan {

class KESTAN_EXPORT NetworkLinkControlSchema final
    : public SchemaT<NetworkLinkControl, NoInstancePolicy, NoDerivedPolicy> {
public:
  NetworkLinkControlSchema();
};

extern template class SchemaT<NetworkLinkControl, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
