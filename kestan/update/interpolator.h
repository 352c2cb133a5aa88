#pragma once

#include "kestan/core/color32.h"
#include "kestan/host/datetime.h"
#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/vec3.h"

#include <QString>

#include <cstdint>
#include <type_traits>

namespace vorrel::kestan {

/// The value at the fraction `t` of the way from `a` to `b`, for values that stand for no amount:
/// they step at the end.
template <class T> struct DiscreteInterpolator {
  static T Interpolate(const T& a, const T& b, float t) { return t >= 1.0F ? b : a; }
};

/// The same for amounts. Whole numbers drop what is behind the point; a switch is on as soon as,
/// and as long as, anything of it is.
template <class T> struct LinearInterpolator {
  static T Interpolate(T a, T b, float t) {
    const long double value =
        static_cast<long double>(a) +
        (static_cast<long double>(b) - static_cast<long double>(a)) * static_cast<long double>(t);
    if constexpr (std::is_same_v<T, bool>)
      return value != 0.0L;
    else if constexpr (std::is_unsigned_v<T>)
      return static_cast<T>(static_cast<long long>(value));
    else
      return static_cast<T>(value);
  }
};

template <> struct LinearInterpolator<QString> : DiscreteInterpolator<QString> {};

template <> struct LinearInterpolator<Vec3<double>> {
  static Vec3<double> Interpolate(const Vec3<double>& a, const Vec3<double>& b, float t) {
    using Component = LinearInterpolator<double>;
    return {Component::Interpolate(a.x, b.x, t), Component::Interpolate(a.y, b.y, t),
            Component::Interpolate(a.z, b.z, t)};
  }
};

/// Channel by channel, in steps of 1/255.
template <> struct LinearInterpolator<Color32> {
  static Color32 Interpolate(const Color32& a, const Color32& b, float t) {
    const std::uint32_t k = static_cast<std::uint32_t>(t * 255.0F) & 0xFFU;
    std::uint32_t mixed = 0;
    for (unsigned shift = 0; shift < 32; shift += 8) {
      const std::uint32_t from = a.value >> shift & 0xFFU;
      const std::uint32_t to = b.value >> shift & 0xFFU;
      mixed |= ((to * k / 255U + from - from * k / 255U) & 0xFFU) << shift;
    }
    return Color32(mixed);
  }
};

template <> struct LinearInterpolator<DateTime> {
  static DateTime Interpolate(const DateTime& a, const DateTime& b, float t) {
    return DateTime::Interpolate(a, b, static_cast<double>(t));
  }
};

template <> struct LinearInterpolator<LegacyScreenVec> {
  static LegacyScreenVec Interpolate(const LegacyScreenVec& a, const LegacyScreenVec& b, float t) {
    return LegacyScreenVec::Interpolate(a, b, static_cast<double>(t));
  }
};

} // namespace vorrel::kestan
