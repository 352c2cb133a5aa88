#pragma once

#include <cstdint>
#include <cstdlib>

/// How often a test draws random numbers. A one-off run raises it, to try many millions of them.
inline std::uint64_t Rounds(std::uint64_t usual) {
  const char* const factor = std::getenv("KESTAN_TEST_ROUNDS_FACTOR");
  return usual * (factor ? std::strtoull(factor, nullptr, 10) : 1);
}
