#pragma once

#include "kestan/host/export.h"

namespace vorrel {

/// Three numbers. A position is longitude, latitude and altitude, in this order.
template <class T> struct KESTAN_EXPORT Vec3 {
  T x{};
  T y{};
  T z{};

  constexpr Vec3() = default;
  constexpr Vec3(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}

  /// `i` is 0, 1 or 2.
  constexpr T& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
  constexpr const T& operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }

  friend constexpr bool operator==(const Vec3& a, const Vec3& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
  }
  friend constexpr bool operator!=(const Vec3& a, const Vec3& b) { return !(a == b); }
  friend constexpr Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
  }
  friend constexpr Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
  }
  friend constexpr Vec3 operator*(const Vec3& a, T factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
  }
};

} // namespace vorrel
