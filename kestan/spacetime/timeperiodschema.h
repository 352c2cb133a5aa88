#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/timeinstant.h"
#include "kestan/spacetime/timeperiod.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TimePeriodSchema final
    : public SchemaT<TimePeriod, NewInstancePolicy, NoDerivedPolicy> {
public:
  TimePeriodSchema();

  ObjField<TimeInstant> begin{*this, "begin", TimeInstant::GetClassSchema(),
                              OffsetOf(&TimePeriod::begin_)};
  ObjField<TimeInstant> end{*this, "end", TimeInstant::GetClassSchema(),
                            OffsetOf(&TimePeriod::end_)};
};

extern template class SchemaT<TimePeriod, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
