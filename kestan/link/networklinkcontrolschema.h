#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/link/networklinkcontrol.h"

namespace vorrel::kestan {

class KESTAN_EXPORT NetworkLinkControlSchema final
    : public SchemaT<NetworkLinkControl, NewInstancePolicy, NoDerivedPolicy> {
public:
  NetworkLinkControlSchema();

  ObjArrayField<Update> updates;
};

extern template class SchemaT<NetworkLinkControl, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
