#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/channel.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ChannelSchema final
    : public SchemaT<Channel, NewInstancePolicy, NoDerivedPolicy> {
public:
  ChannelSchema();
};

extern template class SchemaT<Channel, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
