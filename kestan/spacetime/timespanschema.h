#pragma once

#include "kestan/core/datetimefield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/timespan.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TimeSpanSchema final
    : public SchemaT<TimeSpan, NewInstancePolicy, NoDerivedPolicy> {
public:
  TimeSpanSchema();

  DateTimeField begin{*this, "begin", OffsetOf(&TimeSpan::begin_), Field::kElement};
  DateTimeField end{*this, "end", OffsetOf(&TimeSpan::end_), Field::kElement};
};

class KESTAN_EXPORT GxTimeSpanSchema final
    : public SchemaT<GxTimeSpan, NewInstancePolicy, NoDerivedPolicy> {
public:
  GxTimeSpanSchema();
};

extern template class SchemaT<TimeSpan, NewInstancePolicy, NoDerivedPolicy>;
extern template class SchemaT<GxTimeSpan, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
