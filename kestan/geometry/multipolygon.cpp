#include "kestan/geometry/multipolygon.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/multigeometryschema.h"
#include "kestan/geometry/multipolygonschema.h"

namespace vorrel::kestan {

template class SchemaT<MultiPolygon, NewInstancePolicy, NoDerivedPolicy>;

MultiPolygonSchema::MultiPolygonSchema()
    : SchemaT("MultiPolygon", &MultiGeometry::GetClassSchema(), Namespace::kKml) {
  RemoveSerializedField(MultiGeometrySchema::GetSingleton().geometries);
}

const Schema& MultiPolygon::GetClassSchema() { return MultiPolygonSchema::GetSingleton(); }

MultiPolygon::MultiPolygon(const KmlId& id, const QString& baseUrl)
    : MultiPolygon(nullptr, id, baseUrl) {}

MultiPolygon::MultiPolygon(AbstractFeature* feature, const KmlId& id, const QString& baseUrl)
    : MultiGeometry(GetClassSchema(), id, baseUrl) {
  Complete(feature);
}

MultiPolygon::~MultiPolygon() { NotifyPreDelete(); }

void MultiPolygon::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void MultiPolygon::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

const Field& MultiPolygon::GetMembersField() const {
  return MultiPolygonSchema::GetSingleton().geometries;
}

} // namespace vorrel::kestan
