#pragma once

#include "kestan/host/export.h"

#include <cstdint>

namespace vorrel::kestan {

/// A colour as KML orders it: 0xAABBGGRR.
struct KESTAN_EXPORT Color32 {
  std::uint32_t value = 0xFFFFFFFFU;

  constexpr Color32() = default;
  constexpr explicit Color32(std::uint32_t aabbggrr) : value(aabbggrr) {}

  constexpr bool operator==(Color32 other) const { return value == other.value; }
  constexpr bool operator!=(Color32 other) const { return value != other.value; }
  constexpr bool operator<(Color32 other) const { return value < other.value; }
};

} // namespace vorrel::kestan
