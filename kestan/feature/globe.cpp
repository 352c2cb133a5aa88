#include "kestan/feature/globe.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/globeschema.h"

namespace vorrel::kestan {

template class SchemaT<Globe, NewInstancePolicy, NoDerivedPolicy>;

GlobeSchema::GlobeSchema() : SchemaT("Globe", &AbstractFolder::GetClassSchema(), Namespace::kKml) {}

const Schema& Globe::GetClassSchema() { return GlobeSchema::GetSingleton(); }

Globe::Globe(const KmlId& id, const QString& baseUrl)
    : AbstractFolder(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Globe::~Globe() { NotifyPreDelete(); }

} // namespace vorrel::kestan
