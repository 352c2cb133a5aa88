#include "kestan/spacetime/timeinstant.h"

#include "kestan/core/keptvalues.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timeinstantschema.h"
#include "kestan/spacetime/timeprimitiveschema.h"
#include "kestan/write/writestate.h"

namespace vorrel::kestan {

template class SchemaT<TimeInstant, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<TimeInstant>;

TimeInstantSchema::TimeInstantSchema()
    : SchemaT("TimeInstant", &TimePrimitive::GetClassSchema(), Namespace::kKml) {}

const Schema& TimeInstant::GetClassSchema() { return TimeInstantSchema::GetSingleton(); }

TimeInstant::TimeInstant(const KmlId& id, const QString& baseUrl, bool notify)
    : TimePrimitive(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

TimeInstant::~TimeInstant() { NotifyPreDelete(); }

void TimeInstant::SetTimePosition(const DateTime& time) {
  TimeInstantSchema::GetSingleton().timePosition.SetTypedObject(*this, time);
}

bool TimeInstant::isVisible() const { return Time::IsInRange(GetBegin(), GetEnd()); }

const DateTime* TimeInstant::GetBegin() const { return specified_ ? &timePosition_ : nullptr; }

const DateTime* TimeInstant::GetEnd() const { return GetBegin(); }

bool TimeInstant::IsGiven(const Field&) const { return specified_; }

void TimeInstant::SetNotGiven(const Field&) { specified_ = false; }

void TimeInstant::NotifyFieldChanged(const Field& field) {
  specified_ = true;
  TimePrimitive::NotifyFieldChanged(field);
}

void TimeInstant::CopyNonFieldStuff(const SchemaObject& src) {
  if (src.isOfType(GetClassSchema()))
    specified_ = static_cast<const TimeInstant&>(src).specified_;
  TimePrimitive::CopyNonFieldStuff(src);
}

void TimeInstant::WriteTimeAs(WriteState& state, const char* element, bool isForced) const {
  const Field& field = TimeInstantSchema::GetSingleton().timePosition;
  const auto write = [&](const QString& text, const QString& attrs) {
    state.WriteTagStart(Namespace::kKml, QLatin1String(element));
    if (!attrs.isNull())
      state.WriteUnknownAttrs(attrs, GetUnknownData()->namespaces, true);
    state.out(">");
    state.xml() << text;
    state.WriteTagEnd(Namespace::kKml, QLatin1String(element));
  };
  const KeptField* const kept = GetKeptField(field);
  if (kept) {
    for (const KeptValue& value : kept->displaced)
      write(value.text, value.attrs);
  }
  if (isForced || !timePosition_.isUndefined() || KeepsElement(field))
    write(kept && !kept->text.isNull() ? kept->text : timePosition_.ToString(),
          GetUnknownFieldAttrs(field));
}

void TimeInstant::WriteKml(WriteState& state) const {
  if (!specified_ && !HasUnknownData() && !HasDisplacedOthers())
    return;
  const int depth = state.indent();
  WriteStartTagAs(state, "TimeStamp");
  state.out(">");
  state.SetIndent(0);
  WriteTimeAs(state, "when", false);
  WriteUnknownFields(state);
  state.WriteTagEnd(Namespace::kKml, QStringLiteral("TimeStamp"));
  state.SetIndent(depth);
}

} // namespace vorrel::kestan
