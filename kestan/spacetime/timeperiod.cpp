#include "kestan/spacetime/timeperiod.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timeperiodschema.h"
#include "kestan/spacetime/timeprimitiveschema.h"
#include "kestan/write/writestate.h"

namespace vorrel::kestan {

template class SchemaT<TimePeriod, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const TimePeriodSchema& Fields() { return TimePeriodSchema::GetSingleton(); }

} // namespace

TimePeriodSchema::TimePeriodSchema()
    : SchemaT("TimePeriod", &TimePrimitive::GetClassSchema(), Namespace::kKml) {}

const Schema& TimePeriod::GetClassSchema() { return TimePeriodSchema::GetSingleton(); }

TimePeriod::TimePeriod(const KmlId& id, const QString& baseUrl, bool notify)
    : TimePrimitive(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

TimePeriod::~TimePeriod() { NotifyPreDelete(); }

void TimePeriod::SetBeginInstant(TimeInstant* begin) { Fields().begin.CheckSet(*this, begin); }

void TimePeriod::SetEndInstant(TimeInstant* end) { Fields().end.CheckSet(*this, end); }

bool TimePeriod::IsSpan() const {
  const DateTime* begin = GetBegin();
  const DateTime* end = GetEnd();
  return begin && end ? *begin != *end : begin != end; // null twice, or one open end
}

bool TimePeriod::isVisible() const { return Time::IsInRange(GetBegin(), GetEnd()); }

const DateTime* TimePeriod::GetBegin() const {
  return begin_ ? &begin_->GetTimePosition() : nullptr;
}

const DateTime* TimePeriod::GetEnd() const { return end_ ? &end_->GetTimePosition() : nullptr; }

void TimePeriod::WriteKml(WriteState& state) const {
  const int depth = state.indent();
  WriteStartTagAs(state, "TimeSpan");
  state.out(">\n");
  state.SetIndent(depth + 1);
  if (begin_)
    begin_->WriteTimeAs(state, "begin");
  if (end_)
    end_->WriteTimeAs(state, "end");
  // Elements that nobody knows go to the span, since the instants have no element of their own.
  for (const TimeInstant* instant : {begin_.get(), end_.get()}) {
    if (instant)
      instant->WriteUnknownFields(state);
  }
  WriteUnknownFields(state);
  state.SetIndent(depth);
  state.WriteIndent();
  state.WriteTagEnd(Namespace::kKml, QStringLiteral("TimeSpan"));
}

} // namespace vorrel::kestan
