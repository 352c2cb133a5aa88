#include "kestan/feature/planet.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/planetschema.h"

namespace vorrel::kestan {

template class SchemaT<Planet, NoInstancePolicy, NoDerivedPolicy>;

PlanetSchema::PlanetSchema()
    : SchemaT("Planet", &AbstractFeature::GetClassSchema(), Namespace::kKml) {}

const Schema& Planet::GetClassSchema() { return PlanetSchema::GetSingleton(); }

Planet::Planet(const KmlId& id, const QString& baseUrl)
    : AbstractFeature(GetClassSchema(), id, baseUrl) {
  SetAccess(0);
  NotifyPostCreate();
}

Planet::~Planet() { NotifyPreDelete(); }

void Planet::Accept(GeometryVisitorConst*) const {}

void Planet::Accept(GeometryVisitor*) {}

void Planet::WriteKml(WriteState&) const {}

} // namespace vorrel::kestan
