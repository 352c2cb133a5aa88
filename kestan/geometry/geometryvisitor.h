#pragma once

#include "kestan/host/export.h"

#include <type_traits>

namespace vorrel::kestan {

class DioramaObject;
class Geometry;
class LinearRing;
class LineString;
class Model;
class MultiGeometry;
class MultiLineString;
class MultiPoint;
class MultiPolygon;
class MultiTrack;
class Point;
class Polygon;
class Track;

/// The visits of `GeometryVisitor`, and of `GeometryVisitorConst` with shapes that stay as they
/// are.
template <bool kConst> class KESTAN_EXPORT BasicGeometryVisitor {
public:
  template <class T> using Shape = std::conditional_t<kConst, const T, T>;

  virtual ~BasicGeometryVisitor();

  virtual void visit(Shape<Geometry>& geometry);
  virtual void visit(Shape<Point>& geometry);
  virtual void visit(Shape<LineString>& geometry);
  virtual void visit(Shape<LinearRing>& geometry);
  virtual void visit(Shape<Polygon>& geometry);
  virtual void visit(Shape<MultiGeometry>& geometry);
  virtual void visit(Shape<MultiPoint>& geometry);
  virtual void visit(Shape<MultiLineString>& geometry);
  virtual void visit(Shape<MultiPolygon>& geometry);
  virtual void visit(Shape<Model>& geometry);
  virtual void visit(Shape<DioramaObject>& geometry);
  virtual void visit(Shape<Track>& geometry);
  virtual void visit(Shape<MultiTrack>& geometry);
  virtual bool ShouldVisitBaseClass(Shape<Geometry>& geometry);
};

extern template class BasicGeometryVisitor<false>;
extern template class BasicGeometryVisitor<true>;

/// Double dispatch over the classes of shapes: `Geometry::accept` calls the `visit` of the shape's
/// own class.
///
/// By default the `visit` of each class goes on to `visit(Geometry&)`, unless
/// `ShouldVisitBaseClass` says no. It never stops at a class in between: a ring isn't visited as a
/// line.
class KESTAN_EXPORT GeometryVisitor : public BasicGeometryVisitor<false> {};

/// The same for shapes that stay as they are.
class KESTAN_EXPORT GeometryVisitorConst : public BasicGeometryVisitor<true> {};

} // namespace vorrel::kestan
