#include "kestan/geometry/geometryvisitor.h"

#include "kestan/geometry/dioramaobject.h"
#include "kestan/geometry/linearring.h"
#include "kestan/geometry/linestring.h"
#include "kestan/geometry/model.h"
#include "kestan/geometry/multigeometry.h"
#include "kestan/geometry/multilinestring.h"
#include "kestan/geometry/multipoint.h"
#include "kestan/geometry/multipolygon.h"
#include "kestan/geometry/multitrack.h"
#include "kestan/geometry/point.h"
#include "kestan/geometry/polygon.h"
#include "kestan/geometry/track.h"

namespace vorrel::kestan {

namespace {

template <class Base, class Visitor> void VisitBase(Visitor& visitor, Base& geometry) {
  if (visitor.ShouldVisitBaseClass(geometry))
    visitor.visit(geometry);
}

} // namespace

template <bool kConst> BasicGeometryVisitor<kConst>::~BasicGeometryVisitor() = default;

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<Geometry>&) {}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<Point>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<LineString>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<LinearRing>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<Polygon>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<MultiGeometry>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<MultiPoint>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<MultiLineString>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<MultiPolygon>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<Model>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<DioramaObject>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<Track>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> void BasicGeometryVisitor<kConst>::visit(Shape<MultiTrack>& geometry) {
  VisitBase<Shape<Geometry>>(*this, geometry);
}

template <bool kConst> bool BasicGeometryVisitor<kConst>::ShouldVisitBaseClass(Shape<Geometry>&) {
  return true;
}

template class BasicGeometryVisitor<false>;
template class BasicGeometryVisitor<true>;

} // namespace vorrel::kestan
