#pragma once

#include "kestan/core/datetimefield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/timestamp.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TimeStampSchema final
    : public SchemaT<TimeStamp, NewInstancePolicy, NoDerivedPolicy> {
public:
  TimeStampSchema();

  DateTimeField when{*this, "when", OffsetOf(&TimeStamp::when_), Field::kElement};
};

class KESTAN_EXPORT GxTimeStampSchema final
    : public SchemaT<GxTimeStamp, NewInstancePolicy, NoDerivedPolicy> {
public:
  GxTimeStampSchema();
};

extern template class SchemaT<TimeStamp, NewInstancePolicy, NoDerivedPolicy>;
extern template class SchemaT<GxTimeStamp, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
