#include "kestan/spacetime/abstractxform.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/abstractxformschema.h"

#include <cmath>
#include <limits>

namespace vorrel::kestan {

template class SchemaT<AbstractXform, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<AbstractXform>;

namespace {

constexpr double kTurn = 2.0;
constexpr double kPole = 0.5;
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
/// Beyond this a longitude has no digit left for where it is on the globe.
constexpr double kFarthest = 1e12;

bool IsNear(double value) { return std::fabs(value) <= kFarthest; }

/// Brings `b` to or below `a`, by no more than a turn. While it's dragged it stops there.
void FixPair(double a, double& b, bool isDragged) {
  const double d = b - a;
  if (isDragged) {
    if (d <= -kTurn)
      b = a - kTurn;
    else if (d >= kTurn)
      b = a;
    else if (d > 0.0)
      b -= kTurn;
  } else if (std::fabs(d) < kEpsilon) {
    b = a;
  } else if (std::fabs(std::fabs(d) - kTurn) < kEpsilon) {
    b = a - kTurn;
  } else {
    b -= kTurn * std::ceil(d / kTurn);
  }
}

/// True when an edge that has moved from `former` to `now` went to the west.
bool WentWest(double now, double former) {
  FixPair(now, former, false);
  return now - former > 1.0;
}

bool MovesWest(AbstractXform::Edge edge) {
  return edge == AbstractXform::kEdgeSouthWest || edge == AbstractXform::kEdgeNorthWest ||
         edge == AbstractXform::kEdgeWest;
}

bool MovesEast(AbstractXform::Edge edge) {
  return edge == AbstractXform::kEdgeNorthEast || edge == AbstractXform::kEdgeSouthEast ||
         edge == AbstractXform::kEdgeEast;
}

bool MovesSouth(AbstractXform::Edge edge) {
  return edge == AbstractXform::kEdgeSouthEast || edge == AbstractXform::kEdgeSouthWest ||
         edge == AbstractXform::kEdgeSouth;
}

bool MovesNorth(AbstractXform::Edge edge) {
  return edge == AbstractXform::kEdgeNorthEast || edge == AbstractXform::kEdgeNorthWest ||
         edge == AbstractXform::kEdgeNorth;
}

/// A box that was wide and is narrow now, or the other way round, has been dragged through itself,
/// or once around: the edge that stayed follows the one that moved.
void KeepSide(double& east, double& west, double oldEast, double oldWest,
              AbstractXform::Edge edge) {
  const bool wasWide = oldEast - oldWest > 1.0;
  double end = west;
  FixPair(east, end, false);
  if (wasWide == (east - end > 1.0))
    return;
  if (MovesWest(edge) && wasWide == WentWest(west, oldWest))
    east = wasWide ? west + kTurn : west;
  else if (MovesEast(edge) && wasWide != WentWest(east, oldEast))
    west = wasWide ? east - kTurn : east;
}

void NormalizeLatitudes(double& north, double& south, AbstractXform::Edge edge) {
  if (south > north) {
    if (MovesSouth(edge))
      north = south;
    else if (MovesNorth(edge))
      south = north;
    else
      north = south = (north + south) / 2.0;
  }
  north = std::fmin(std::fmax(north, -kPole), kPole);
  south = std::fmin(std::fmax(south, -kPole), kPole);
}

} // namespace

AbstractXformSchema::AbstractXformSchema() : SchemaT("AbstractXform", nullptr, Namespace::kKml) {}

const Schema& AbstractXform::GetClassSchema() { return AbstractXformSchema::GetSingleton(); }

AbstractXform::AbstractXform(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

AbstractXform::~AbstractXform() = default;

bool AbstractXform::IsPosition(const Vec3<double>& position) {
  return IsNear(position.x) && IsNear(position.y) && std::isfinite(position.z);
}

bool AbstractXform::IsExtent(double north, double south, double east, double west) {
  return IsNear(north) && IsNear(south) && IsNear(east) && IsNear(west);
}

bool AbstractXform::NormalizeExtents(double& north, double& south, double& east, double& west,
                                     double oldEast, double oldWest, Edge edge) {
  if (!IsExtent(north, south, east, west))
    return false;
  if (!IsNear(oldEast) || !IsNear(oldWest)) {
    oldEast = east;
    oldWest = west;
  }
  const double givenEast = east;
  const double givenWest = west;
  FixPair(east, west, edge != kEdgeNone);
  KeepSide(east, west, oldEast, oldWest, edge);
  const double middle = (east + west) / 2.0;
  const double shift = middle > 1.0 ? -kTurn : middle < -1.0 ? kTurn : 0.0;
  east += shift;
  west += shift;
  NormalizeLatitudes(north, south, edge);
  return std::fabs(east - givenEast) >= kEpsilon || std::fabs(west - givenWest) >= kEpsilon;
}

} // namespace vorrel::kestan
