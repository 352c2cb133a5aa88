#pragma once

#include <cstdint>

/// Exact steps between binary and decimal numbers, on which reading and printing rest.
namespace vorrel::decimal {

/// Powers of ten up to this one have a factor 5^n that fits 64 bits with room to spare.
constexpr int kMaxExactPower = 27;

/// 10^n for n from 0 to 19.
std::uint64_t PowerOfTen(int n);

/// The double nearest to `digits` * 10^`exponent`, ties to even, as reading its text gives it.
/// `exponent` lies within +-`kMaxExactPower`.
double ToDouble(std::uint64_t digits, int exponent);

/// A decimal number with a fixed count of digits; its value is `digits` * 10^(`exponent` - count
/// + 1), so that `exponent` belongs to the first digit.
struct Decimal {
  std::uint64_t digits;
  int exponent;
};

/// Rounds a positive number to `count` digits (1 to 17), ties to even on its exact value. False
/// when the number lies outside the range in which that takes one multiplication.
bool Round(double value, int count, Decimal& result);

} // namespace vorrel::decimal
