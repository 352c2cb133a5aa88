#pragma once

#include "kestan/host/export.h"

namespace vorrel {

/// Two numbers: a position on a plane, or a size.
template <class T> struct KESTAN_EXPORT Vec2 {
  T x{};
  T y{};

  constexpr Vec2() = default;
  constexpr Vec2(T xValue, T yValue) : x(xValue), y(yValue) {}

  friend constexpr bool operator==(const Vec2& a, const Vec2& b) {
    return a.x == b.x && a.y == b.y;
  }
  friend constexpr bool operator!=(const Vec2& a, const Vec2& b) { return !(a == b); }
};

} // namespace vorrel
