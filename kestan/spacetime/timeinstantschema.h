#pragma once

#include "kestan/core/datetimefield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/timeinstant.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TimeInstantSchema final
    : public SchemaT<TimeInstant, NewInstancePolicy, NoDerivedPolicy> {
public:
  TimeInstantSchema();

  DateTimeField timePosition{*this, "timePosition", OffsetOf(&TimeInstant::timePosition_),
                             Field::kElement};
};

extern template class SchemaT<TimeInstant, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
