#include "kestan/spacetime/timespan.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timeprimitiveschema.h"
#include "kestan/spacetime/timespanschema.h"

namespace vorrel::kestan {

template class SchemaT<TimeSpan, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<GxTimeSpan, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const TimeSpanSchema& Fields() { return TimeSpanSchema::GetSingleton(); }

} // namespace

TimeSpanSchema::TimeSpanSchema()
    : SchemaT("TimeSpan", &TimePrimitive::GetClassSchema(), Namespace::kKml) {}

GxTimeSpanSchema::GxTimeSpanSchema()
    : SchemaT("TimeSpan", &TimeSpan::GetClassSchema(), Namespace::kExt) {}

const Schema& TimeSpan::GetClassSchema() { return TimeSpanSchema::GetSingleton(); }

TimeSpan::TimeSpan(const KmlId& id, const QString& baseUrl, bool notify)
    : TimePrimitive(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

TimeSpan::TimeSpan(const GxTimeSpanSchema& schema, const KmlId& id, const QString& baseUrl)
    : TimePrimitive(schema, id, baseUrl) {}

TimeSpan::~TimeSpan() { NotifyPreDelete(); }

void TimeSpan::SetBegin(const DateTime* begin) {
  Fields().begin.CheckSet(*this, begin ? *begin : DateTime());
}

void TimeSpan::SetEnd(const DateTime* end) {
  Fields().end.CheckSet(*this, end ? *end : DateTime());
}

// The undefined time equals itself only, so that one open end makes a span, and two don't.
bool TimeSpan::IsSpan() const { return begin_ != end_; }

bool TimeSpan::isVisible() const { return Time::IsInRange(&begin_, &end_); }

const DateTime* TimeSpan::GetBegin() const { return begin_.isUndefined() ? nullptr : &begin_; }

const DateTime* TimeSpan::GetEnd() const { return end_.isUndefined() ? nullptr : &end_; }

const Schema& GxTimeSpan::GetClassSchema() { return GxTimeSpanSchema::GetSingleton(); }

GxTimeSpan::GxTimeSpan(const KmlId& id, const QString& baseUrl, bool notify)
    : TimeSpan(GxTimeSpanSchema::GetSingleton(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

GxTimeSpan::~GxTimeSpan() { NotifyPreDelete(); }

} // namespace vorrel::kestan
