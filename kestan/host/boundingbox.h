#pragma once

#include "kestan/host/vec3.h"

#include <algorithm>
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

  friend constexpr bool operator==(const BoundingBox& a, const BoundingBox& b) {
    return a.low == b.low && a.high == b.high;
  }
  friend constexpr bool operator!=(const BoundingBox& a, const BoundingBox& b) { return !(a == b); }

private:
  static constexpr T kMax = std::numeric_limits<T>::max();
};

} // namespace vorrel
