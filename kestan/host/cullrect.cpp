#include "kestan/host/cullrect.h"

#include <algorithm>
#include <cmath>

namespace vorrel {

namespace {

constexpr double kGlobe = 2.0;

/// The same meridian as `x`, counted so that it is the first one at or east of `edge`. An edge that
/// was made from this meridian is met exactly, though the division rounds.
double EastOf(double edge, double x) {
  const double turns = std::ceil((edge - x) / kGlobe);
  const double before = x + kGlobe * (turns - 1.0);
  return before >= edge ? before : x + kGlobe * turns;
}

/// The same for the first one at or west of `edge`.
double WestOf(double edge, double x) {
  const double turns = std::floor((edge - x) / kGlobe);
  const double behind = x + kGlobe * (turns + 1.0);
  return behind <= edge ? behind : x + kGlobe * turns;
}

} // namespace

bool CullRect::contains(double x, double y) const {
  return !IsEmpty() && south <= y && y <= north && EastOf(west, x) <= east;
}

void CullRect::extend(double x, double y) {
  if (std::isfinite(x) && std::isfinite(y))
    extend(CullRect{x, y, x, y});
}

void CullRect::extend(const CullRect& other) {
  if (other.IsEmpty())
    return;
  if (IsEmpty()) {
    *this = other;
    return;
  }
  south = std::min(south, other.south);
  north = std::max(north, other.north);

  const double width = std::min(other.east - other.west, kGlobe);
  if (EastOf(west, other.west) + width <= east)
    return;
  const double over = WestOf(west, other.west); // where the other begins, when not east of us
  if (over + width >= east) {
    west = over;
    east = over + width;
    return;
  }
  const double farEast = EastOf(east, other.west + width);
  if (farEast - east <= west - over)
    east = std::min(farEast, std::max(east, west + kGlobe));
  else
    west = std::max(over, std::min(west, east - kGlobe));
}

} // namespace vorrel
