#include "kestan/geometry/multilinestring.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/multigeometryschema.h"
#include "kestan/geometry/multilinestringschema.h"

namespace vorrel::kestan {

template class SchemaT<MultiLineString, NewInstancePolicy, NoDerivedPolicy>;

MultiLineStringSchema::MultiLineStringSchema()
    : SchemaT("MultiLineString", &MultiGeometry::GetClassSchema(), Namespace::kKml) {
  RemoveSerializedField(MultiGeometrySchema::GetSingleton().geometries);
}

const Schema& MultiLineString::GetClassSchema() { return MultiLineStringSchema::GetSingleton(); }

MultiLineString::MultiLineString(const KmlId& id, const QString& baseUrl)
    : MultiLineString(nullptr, id, baseUrl) {}

MultiLineString::MultiLineString(AbstractFeature* feature, const KmlId& id, const QString& baseUrl)
    : MultiGeometry(GetClassSchema(), id, baseUrl) {
  Complete(feature);
}

MultiLineString::~MultiLineString() { NotifyPreDelete(); }

LineString* MultiLineString::GetLineString(int index) const {
  Geometry* const geometry = GetGeometry(index);
  const bool isLine = geometry && geometry->isOfType(LineString::GetClassSchema());
  return isLine ? static_cast<LineString*>(geometry) : nullptr;
}

bool MultiLineString::InsertGeometry(int index, Geometry& geometry) {
  return geometry.isOfType(LineString::GetClassSchema()) &&
         MultiGeometry::InsertGeometry(index, geometry);
}

bool MultiLineString::SetGeometry(int index, Geometry& geometry) {
  return geometry.isOfType(LineString::GetClassSchema()) &&
         MultiGeometry::SetGeometry(index, geometry);
}

void MultiLineString::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void MultiLineString::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

const Field& MultiLineString::GetMembersField() const {
  return MultiLineStringSchema::GetSingleton().geometries;
}

} // namespace vorrel::kestan
