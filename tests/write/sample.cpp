#include "tests/write/sample.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "tests/write/sampleschema.h"

namespace vorrel::kestan {

template class SchemaT<Sample, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Sample>;

SampleSchema::SampleSchema() : SchemaT("Sample", nullptr, Namespace::kExt) {}

const Schema& Sample::GetClassSchema() { return SampleSchema::GetSingleton(); }

Sample::Sample(const KmlId& id, const QString& baseUrl, bool notify)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

Sample::~Sample() { NotifyPreDelete(); }

} // namespace vorrel::kestan
