#include "kestan/geometry/point.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/pointschema.h"

namespace vorrel::kestan {

template class SchemaT<Point, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Point>;
template class ObjArrayField<Point>;

PointSchema::PointSchema() : SchemaT("Point", &Geometry::GetClassSchema(), Namespace::kKml) {}

const Schema& Point::GetClassSchema() { return PointSchema::GetSingleton(); }

Point::Point(const KmlId& id, const QString& baseUrl)
    : Point(Vec3<double>(), nullptr, id, baseUrl) {}

Point::Point(const Vec3<double>& coord, AbstractFeature* feature, const KmlId& id,
             const QString& baseUrl)
    : Geometry(GetClassSchema(), id, baseUrl), coord_(coord) {
  Complete(feature);
}

Point::~Point() { NotifyPreDelete(); }

void Point::SetCoord(const Vec3<double>& coord) {
  if (coord == coord_ && !HasKeptValue(PointSchema::GetSingleton().coordinates))
    return;
  coord_ = coord;
  NotifyCoordsChanged();
}

void Point::SetLongitude(double longitude) { SetCoord({longitude, coord_.y, coord_.z}); }

void Point::SetLatitude(double latitude) { SetCoord({coord_.x, latitude, coord_.z}); }

void Point::SetAltitude(double altitude) { SetCoord({coord_.x, coord_.y, altitude}); }

void Point::SetLongitudes(const double* values, int count) {
  if (values && count > 0)
    SetLongitude(values[0]);
}

void Point::SetLatitudes(const double* values, int count) {
  if (values && count > 0)
    SetLatitude(values[0]);
}

void Point::SetAltitudes(const double* values, int count) {
  if (values && count > 0)
    SetAltitude(values[0]);
}

void Point::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void Point::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

const Vec3<double>* Point::GetCoords(int& count) const {
  count = 1;
  return &coord_;
}

void Point::SetCoords(const Vec3<double>* coords, int count) {
  if (coords && count > 0)
    SetCoord(coords[0]);
}

void Point::NotifyCoordsChanged() {
  PointSchema::GetSingleton().coordinates.NotifyFieldChanged(*this);
}

GeoBoundingBox<double> Point::GetBBox() const { return {coord_, coord_}; }

} // namespace vorrel::kestan
