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

GeometryVisitor::~GeometryVisitor() = default;

void GeometryVisitor::visit(Geometry&) {}

void GeometryVisitor::visit(Point& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(LineString& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(LinearRing& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(Polygon& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(MultiGeometry& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(MultiPoint& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(MultiLineString& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(MultiPolygon& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(Model& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(DioramaObject& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(Track& geometry) { VisitBase<Geometry>(*this, geometry); }

void GeometryVisitor::visit(MultiTrack& geometry) { VisitBase<Geometry>(*this, geometry); }

bool GeometryVisitor::ShouldVisitBaseClass(Geometry&) { return true; }

GeometryVisitorConst::~GeometryVisitorConst() = default;

void GeometryVisitorConst::visit(const Geometry&) {}

void GeometryVisitorConst::visit(const Point& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const LineString& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const LinearRing& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const Polygon& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const MultiGeometry& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const MultiPoint& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const MultiLineString& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const MultiPolygon& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const Model& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const DioramaObject& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const Track& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

void GeometryVisitorConst::visit(const MultiTrack& geometry) {
  VisitBase<const Geometry>(*this, geometry);
}

bool GeometryVisitorConst::ShouldVisitBaseClass(const Geometry&) { return true; }

} // namespace vorrel::kestan
