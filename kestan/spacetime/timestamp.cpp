#include "kestan/spacetime/timestamp.h"

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
  if (!when_.isEqualByComponent(when))
    TimeStampSchema::GetSingleton().when.SetTypedObject(*this, when);
}

bool TimeStamp::isVisible() const { return Time::IsInRange(&when_, &when_); }

const DateTime* TimeStamp::GetBegin() const { return when_.isUndefined() ? nullptr : &when_; }

const DateTime* TimeStamp::GetEnd() const { return GetBegin(); }

FromStringResult TimeStamp::fromString(const QString& text) {
  SetWhen(DateTime::FromString(text));
  return FromStringResult::kOk;
}

const Schema& GxTimeStamp::GetClassSchema() { return GxTimeStampSchema::GetSingleton(); }

GxTimeStamp::GxTimeStamp(const KmlId& id, const QString& baseUrl, bool notify)
    : TimeStamp(GxTimeStampSchema::GetSingleton(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

GxTimeStamp::~GxTimeStamp() { NotifyPreDelete(); }

} // namespace vorrel::kestan
