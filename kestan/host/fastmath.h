#pragma once

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

} // namespace vorrel
