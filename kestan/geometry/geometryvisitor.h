#pragma once

#include "kestan/host/export.h"

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

/// Double dispatch over the classes of shapes: `Geometry::accept` calls the `visit` of the shape's
/// own class.
///
/// By default the `visit` of each class goes on to `visit(Geometry&)`, unless
/// `ShouldVisitBaseClass` says no. It never stops at a class in between: a ring isn't visited as a
/// line.
class KESTAN_EXPORT GeometryVisitor {
public:
  virtual ~GeometryVisitor();

  virtual void visit(Geometry& geometry);
  virtual void visit(Point& geometry);
  virtual void visit(LineString& geometry);
  virtual void visit(LinearRing& geometry);
  virtual void visit(Polygon& geometry);
  virtual void visit(MultiGeometry& geometry);
  virtual void visit(MultiPoint& geometry);
  virtual void visit(MultiLineString& geometry);
  virtual void visit(MultiPolygon& geometry);
  virtual void visit(Model& geometry);
  virtual void visit(DioramaObject& geometry);
  virtual void visit(Track& geometry);
  virtual void visit(MultiTrack& geometry);
  virtual bool ShouldVisitBaseClass(Geometry& geometry);
};

/// The same for shapes that stay as they are.
class KESTAN_EXPORT GeometryVisitorConst {
public:
  virtual ~GeometryVisitorConst();

  virtual void visit(const Geometry& geometry);
  virtual void visit(const Point& geometry);
  virtual void visit(const LineString& geometry);
  virtual void visit(const LinearRing& geometry);
  virtual void visit(const Polygon& geometry);
  virtual void visit(const MultiGeometry& geometry);
  virtual void visit(const MultiPoint& geometry);
  virtual void visit(const MultiLineString& geometry);
  virtual void visit(const MultiPolygon& geometry);
  virtual void visit(const Model& geometry);
  virtual void visit(const DioramaObject& geometry);
  virtual void visit(const Track& geometry);
  virtual void visit(const MultiTrack& geometry);
  virtual bool ShouldVisitBaseClass(const Geometry& geometry);
};

} // namespace vorrel::kestan
