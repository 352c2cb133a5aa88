#pragma once

#include "kestan/host/vec3.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vorrel {

/// Box between two corners. Without a point in it, `low` holds the largest value and `high` the
/// smallest, so that the first point sets both.
template <class T> struct BoundingBox {
  Vec3<T> low{kMax, kMax, kMax};
  Vec3<T> high{-kMax, -kMax, -kMax};

  constexpr BoundingBox() = default;
  constexpr BoundingBox(const Vec3<T>& lowCorner, const Vec3<T>& highCorner)
      : low(lowCorner), high(highCorner) {}

  /// True when there is no room between the corners along any of the axes.
  constexpr bool IsEmpty() const { return low.x > high.x || low.y > high.y || low.z > high.z; }
  constexpr bool contains(const Vec3<T>& p) const {
    return low.x <= p.x && p.x <= high.x && low.y <= p.y && p.y <= high.y && low.z <= p.z &&
           p.z <= high.z;
  }

  constexpr void add(const Vec3<T>& p) {
    for (int i = 0; i < 3; ++i) {
      low[i] = std::min(low[i], p[i]);
      high[i] = std::max(high[i], p[i]);
    }
  }
  constexpr void add(const BoundingBox& box) {
    if (box.IsEmpty())
      return;
    add(box.low);
    add(box.high);
  }

  /// Of a box of normalised longitudes and latitudes, with altitudes in planet radii: makes the box
  /// around it in space, in planet radii from the centre, with y towards the north pole. Empty for
  /// a box with numbers that aren't finite.
  void ConvertToCartesianBoundingBox() {
    const BoundingBox box = *this;
    *this = BoundingBox();
    const auto isFinite = [](const Vec3<T>& p) {
      return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
    };
    if (!isFinite(box.low) || !isFinite(box.high))
      return;
    ForEachExtreme(box.low.y, box.high.y, [&](double latitude) {
      ForEachExtreme(box.low.x, box.high.x, [&](double longitude) {
        const double p = latitude / 180.0 * kPi;
        const double l = (longitude / 180.0 + 0.5) * kPi;
        for (const T altitude : {box.low.z, box.high.z}) {
          const double r = 1.0 + static_cast<double>(altitude);
          add({static_cast<T>(r * std::cos(p) * std::cos(l)), static_cast<T>(r * std::sin(p)),
               static_cast<T>(-r * std::cos(p) * std::sin(l))});
        }
      });
    });
  }

  friend constexpr bool operator==(const BoundingBox& a, const BoundingBox& b) {
    return a.low == b.low && a.high == b.high;
  }
  friend constexpr bool operator!=(const BoundingBox& a, const BoundingBox& b) { return !(a == b); }

private:
  static constexpr double kPi = 3.14159265358979323846;

  /// Calls `visit(double)` for the ends of a range of normalised angles, in degrees, and for the
  /// quarter turns between them, where a circle has its extremes. No range is more than a turn.
  template <class Visit> static void ForEachExtreme(T low, T high, Visit visit) {
    constexpr double kQuarter = 90.0;
    constexpr double kTurn = 360.0;
    const double length = (static_cast<double>(high) - static_cast<double>(low)) * 180.0;
    double at = std::fmod(static_cast<double>(low) * 180.0, kTurn);
    const double end = at + std::fmin(length, kTurn);
    visit(at);
    while (at != end) {
      at = std::fmin(std::floor((at + kQuarter) / kQuarter) * kQuarter, end);
      visit(at);
    }
  }

  static constexpr T kMax = std::numeric_limits<T>::max();
};

} // namespace vorrel
