#include "kestan/spacetime/timeprimitive.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/host/datetime.h"
#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timeprimitiveschema.h"
#include "kestan/write/writestate.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<TimePrimitive, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<TimePrimitive>;

TimePrimitiveSchema::TimePrimitiveSchema() : SchemaT("TimePrimitive", nullptr, Namespace::kKml) {}

const Schema& TimePrimitive::GetClassSchema() { return TimePrimitiveSchema::GetSingleton(); }

TimePrimitive::TimePrimitive(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

TimePrimitive::~TimePrimitive() = default;

bool TimePrimitive::IsSpan() const { return false; }

void TimePrimitive::NotifyFieldChanged(const Field& field) {
  Time::NotifyWorldRangeChanged();
  SchemaObject::NotifyFieldChanged(field);
}

void TimePrimitive::WriteStartTagAs(WriteState& state, const char* name) const {
  state.WriteTagStart(Namespace::kKml, QLatin1String(name));
  const mmvector<Field*>& attributes = GetSchema().GetAttributes();
  std::for_each(attributes.rbegin(), attributes.rend(),
                [&](const Field* field) { field->WriteKml(*this, state); });
  WriteUnknownAttrs(state);
}

} // namespace vorrel::kestan
