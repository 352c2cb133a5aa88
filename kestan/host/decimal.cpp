#include "kestan/host/decimal.h"

#include "kestan/host/int128.h"

#include <array>
#include <bit>
#include <cmath>

namespace vorrel::decimal {

namespace {

template <std::uint64_t kBase, int kCount> constexpr std::array<std::uint64_t, kCount> Powers() {
  std::array<std::uint64_t, kCount> powers{};
  std::uint64_t power = 1;
  for (int i = 0; i < kCount; ++i) {
    powers[static_cast<std::size_t>(i)] = power;
    power *= kBase;
  }
  return powers;
}

constexpr auto kPowersOfTen = Powers<10, 20>();
constexpr auto kPowersOfFive = Powers<5, kMaxExactPower + 1>();
constexpr std::array<double, 23> kExactDoubles = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

std::uint64_t PowerOfFive(int n) { return kPowersOfFive[static_cast<std::size_t>(n)]; }

/// 2^n for an exponent of normal numbers.
double PowerOfTwo(int n) {
  return std::bit_cast<double>(static_cast<std::uint64_t>(n + 1023) << 52);
}

/// Drops the lowest `bits` bits (1 to 127), ties to even; `sticky` tells of a rest below them.
uint128 ShiftRounded(uint128 value, int bits, bool sticky) {
  const uint128 rest = value & ((uint128(1) << bits) - 1);
  const uint128 half = uint128(1) << (bits - 1);
  uint128 shifted = value >> bits;
  if (rest > half || (rest == half && (sticky || (shifted & 1) != 0)))
    ++shifted;
  return shifted;
}

int BitLength(uint128 value) {
  const auto high = static_cast<std::uint64_t>(value >> 64);
  return high != 0 ? 128 - std::countl_zero(high)
                   : 64 - std::countl_zero(static_cast<std::uint64_t>(value));
}

/// `value` * 2^`exponent` as a double; the result is a normal number.
double Compose(uint128 value, int exponent, bool sticky) {
  const int excess = BitLength(value) - 53;
  if (excess > 0) {
    value = ShiftRounded(value, excess, sticky);
    exponent += excess;
  }
  return static_cast<double>(static_cast<std::uint64_t>(value)) * PowerOfTwo(exponent);
}

} // namespace

std::uint64_t PowerOfTen(int n) { return kPowersOfTen[static_cast<std::size_t>(n)]; }

double ToDouble(std::uint64_t digits, int exponent) {
  constexpr std::uint64_t kExact = std::uint64_t(1) << 53;
  if (digits <= kExact && exponent >= -22 && exponent <= 22) {
    // Both numbers are exact, so the one operation rounds correctly.
    const auto value = static_cast<double>(digits);
    return exponent < 0 ? value / kExactDoubles[static_cast<std::size_t>(-exponent)]
                        : value * kExactDoubles[static_cast<std::size_t>(exponent)];
  }
  if (digits == 0)
    return 0.0;
  if (exponent >= 0)
    return Compose(uint128(digits) * PowerOfFive(exponent), exponent, false);
  // Both sides are shifted up so that the quotient fills 63 or 64 bits and a rest can be told.
  const std::uint64_t divisor = PowerOfFive(-exponent);
  const int divisorShift = std::countl_zero(divisor);
  const int digitsShift = std::countl_zero(digits);
  const uint128 dividend = uint128(digits << digitsShift) << 63;
  const std::uint64_t scaled = divisor << divisorShift;
  const uint128 quotient = dividend / scaled;
  const bool sticky = quotient * scaled != dividend;
  return Compose(quotient, divisorShift - digitsShift - 63 + exponent, sticky);
}

bool Round(double value, int count, Decimal& result) {
  constexpr double kSmallest = 1e-11;
  constexpr double kBeyond = 9e15;
  if (!(value >= kSmallest && value < kBeyond))
    return false;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int exponent = static_cast<int>(bits >> 52) - 1075;
  const std::uint64_t mantissa = (bits & ((std::uint64_t(1) << 52) - 1)) | (std::uint64_t(1) << 52);

  // 1233 / 4096 is log10(2) closely enough for this range; the estimate is at most one too low.
  int first = ((exponent + 52) * 1233) >> 12;
  const std::uint64_t limit = PowerOfTen(count);
  for (;; ++first) {
    const int power = count - 1 - first;
    const bool divides = power < 0;
    if (divides || power > kMaxExactPower)
      return false;
    const uint128 product = uint128(mantissa) * PowerOfFive(power);
    const int shift = -(exponent + power);
    const uint128 digits = shift > 0 ? ShiftRounded(product, shift, false) : product << -shift;
    if (digits < limit) {
      result = {static_cast<std::uint64_t>(digits), first};
      return true;
    }
  }
}

} // namespace vorrel::decimal
