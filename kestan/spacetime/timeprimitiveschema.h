#pragma once

#include "kestan/core/schemat.h"
#include "kestan/spacetime/timenotifier.h"
#include "kestan/spacetime/timeprimitive.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TimePrimitiveSchema final
    : public SchemaT<TimePrimitive, NoInstancePolicy, NoDerivedPolicy> {
public:
  TimePrimitiveSchema();

  TimeNotifier& GetNotifier() { return notifier_; }

private:
  TimeNotifier notifier_;
};

extern template class SchemaT<TimePrimitive, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
