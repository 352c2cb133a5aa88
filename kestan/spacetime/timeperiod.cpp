#include "kestan/spacetime/timeperiod.h"

#include "kestan/core/keptvalues.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timeperiodschema.h"
#include "kestan/spacetime/timeprimitiveschema.h"
#include "kestan/write/writestate.h"

#include <utility>

namespace vorrel::kestan {

template class SchemaT<TimePeriod, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const TimePeriodSchema& Fields() { return TimePeriodSchema::GetSingleton(); }

/// The present instant counts as set too.
void Set(TimePeriod& period, const ObjField<TimeInstant>& field, TimeInstant* instant) {
  if (field.GetObject(period, -1) == instant)
    field.NotifyFieldChanged(period);
  else
    field.CheckSet(period, instant);
}

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

void TimePeriod::SetBeginInstant(TimeInstant* begin) { Set(*this, Fields().begin, begin); }

void TimePeriod::SetEndInstant(TimeInstant* end) { Set(*this, Fields().end, end); }

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
  mmvector<const TimeInstant*> instants;
  for (const auto& [field, element] :
       {std::pair(&Fields().begin, "begin"), std::pair(&Fields().end, "end")}) {
    const std::size_t first = instants.size();
    if (const KeptField* kept = GetKeptField(*field)) {
      for (const KeptValue& value : kept->displaced) {
        if (value.object)
          instants.push_back(static_cast<const TimeInstant*>(value.object.get()));
      }
    }
    const bool hasDisplaced = instants.size() > first;
    if (const RefPtr<TimeInstant> instant = field->get(*this))
      instants.push_back(instant.get());
    for (std::size_t i = first; i < instants.size(); ++i)
      instants[i]->WriteTimeAs(state, element, hasDisplaced);
  }
  // Elements that nobody knows go to the span, since the instants have no element of their own.
  for (const TimeInstant* instant : instants)
    instant->WriteUnknownFields(state);
  WriteUnknownFields(state);
  state.SetIndent(depth);
  state.WriteIndent();
  state.WriteTagEnd(Namespace::kKml, QStringLiteral("TimeSpan"));
}

} // namespace vorrel::kestan
