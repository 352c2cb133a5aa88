#include "kestan/geometry/multipoint.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/multigeometryschema.h"
#include "kestan/geometry/multipointschema.h"

namespace vorrel::kestan {

template class SchemaT<MultiPoint, NewInstancePolicy, NoDerivedPolicy>;

MultiPointSchema::MultiPointSchema()
    : SchemaT("MultiPoint", &MultiGeometry::GetClassSchema(), Namespace::kKml) {
  RemoveSerializedField(MultiGeometrySchema::GetSingleton().geometries);
}

const Schema& MultiPoint::GetClassSchema() { return MultiPointSchema::GetSingleton(); }

MultiPoint::MultiPoint(const KmlId& id, const QString& baseUrl)
    : MultiPoint(nullptr, id, baseUrl) {}

MultiPoint::MultiPoint(AbstractFeature* feature, const KmlId& id, const QString& baseUrl)
    : MultiGeometry(GetClassSchema(), id, baseUrl) {
  Complete(feature);
}

MultiPoint::~MultiPoint() { NotifyPreDelete(); }

void MultiPoint::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void MultiPoint::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

const Field& MultiPoint::GetMembersField() const {
  return MultiPointSchema::GetSingleton().geometries;
}

} // namespace vorrel::kestan
