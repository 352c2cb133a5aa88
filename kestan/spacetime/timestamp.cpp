#include "kestan/spacetime/timestamp.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/keptvalues.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timeprimitiveschema.h"
#include "kestan/spacetime/timestampschema.h"

namespace vorrel::kestan {

template class SchemaT<TimeStamp, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<GxTimeStamp, NewInstancePolicy, NoDerivedPolicy>;

TimeStampSchema::TimeStampSchema()
    : SchemaT("TimeStamp", &TimePrimitive::GetClassSchema(), Namespace::kKml) {}

GxTimeStampSchema::GxTimeStampSchema()
    : SchemaT("TimeStamp", &TimeStamp::GetClassSchema(), Namespace::kExt) {}

const Schema& TimeStamp::GetClassSchema() { return TimeStampSchema::GetSingleton(); }

TimeStamp::TimeStamp(const KmlId& id, const QString& baseUrl, bool notify)
    : TimePrimitive(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

TimeStamp::TimeStamp(const GxTimeStampSchema& schema, const KmlId& id, const QString& baseUrl)
    : TimePrimitive(schema, id, baseUrl) {}

TimeStamp::~TimeStamp() { NotifyPreDelete(); }

void TimeStamp::SetWhen(const DateTime& when) {
  TimeStampSchema::GetSingleton().when.CheckSet(*this, when);
}

bool TimeStamp::isVisible() const { return Time::IsInRange(&when_, &when_); }

const DateTime* TimeStamp::GetBegin() const { return when_.isUndefined() ? nullptr : &when_; }

const DateTime* TimeStamp::GetEnd() const { return GetBegin(); }

FromStringResult TimeStamp::fromString(const QString& text) {
  const DateTimeField& when = TimeStampSchema::GetSingleton().when;
  const bool isGiven = !when_.isUndefined() || KeepsElement(when);
  if (isGiven && DateTime::FromString(text).isUndefined())
    return FromStringResult::kUnsupportedData; // no time, but stray text behind one
  const DeletionDeferrer deferrer;
  const Displacement displacement(*this, when, isGiven);
  return when.fromString(*this, nullptr, nullptr, text, -1, nullptr);
}

const Field* TimeStamp::GetTextField() const { return &TimeStampSchema::GetSingleton().when; }

const Schema& GxTimeStamp::GetClassSchema() { return GxTimeStampSchema::GetSingleton(); }

GxTimeStamp::GxTimeStamp(const KmlId& id, const QString& baseUrl, bool notify)
    : TimeStamp(GxTimeStampSchema::GetSingleton(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

GxTimeStamp::~GxTimeStamp() { NotifyPreDelete(); }

} // namespace vorrel::kestan
