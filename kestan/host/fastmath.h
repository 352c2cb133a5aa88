#pragma once

#include "kestan/host/export.h"
#include "kestan/host/vec3.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vorrel {

/// Equal but for what a few roundings make of a number: within four steps of the larger one.
/// Positions that differ in the twelfth decimal of a degree are told apart.
inline bool etalmostEquald(double a, double b) {
  const double larger = std::max(std::fabs(a), std::fabs(b));
  return std::fabs(a - b) <= 4.0 * std::numeric_limits<double>::epsilon() * larger;
}

/// The direction from one position to another along the globe's surface, in degrees clockwise from
/// north, from 0 up to 360. Positions are normalised. 0 when both lie on the same spot.
KESTAN_EXPORT double ComputeCompassHeading(const Vec3<double>& from, const Vec3<double>& to);

/// The attitude at the fraction `t` of the shortest turn from `a` to `b`. Attitudes are heading,
/// tilt and roll in radians: turns about the axes z, x and y, applied in the order roll, tilt,
/// heading. Exactly `a` at 0 and `b` at 1.
KESTAN_EXPORT Vec3<double> EulerSlerp(const Vec3<double>& a, const Vec3<double>& b, double t);

namespace math {

/// How far a patch of the globe is from being a box: the height by which its middle rises above
/// the chords between its edges, in proportion to its largest extent. 0 for an empty patch.
///
/// Edges are normalised longitudes and latitudes, altitudes are planet radii.
KESTAN_EXPORT float ComputeFlatness(double north, double south, double east, double west,
                                    double minAltitude, double maxAltitude);

} // namespace math

} // namespace vorrel
