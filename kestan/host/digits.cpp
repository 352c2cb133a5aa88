#include "kestan/host/digits.h"

#include <array>
#include <charconv>
#include <cstring>

namespace vorrel::digits {

namespace {

constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

/// Writes exactly `count` digits, with zeros in front.
void WriteDigits(std::uint64_t value, int count, char* out) {
  while (count >= 2) {
    count -= 2;
    std::memcpy(out + count, &kPairs[2 * (value % 100)], 2);
    value /= 100;
  }
  if (count == 1)
    out[0] = static_cast<char>('0' + value % 10);
}

} // namespace

char* WriteGeneral(decimal::Decimal value, int count, int precision, char* out) {
  char text[24];
  WriteDigits(value.digits, count, text);
  int used = count;
  while (used > 1 && text[used - 1] == '0')
    --used;

  const int exponent = value.exponent;
  const auto put = [&out](const char* from, int n) {
    std::memcpy(out, from, static_cast<std::size_t>(n));
    out += n;
  };
  if (exponent < -4 || exponent >= precision) {
    *out++ = text[0];
    if (used > 1) {
      *out++ = '.';
      put(text + 1, used - 1);
    }
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    const int size = exponent < 0 ? -exponent : exponent;
    if (size < 10)
      *out++ = '0';
    return std::to_chars(out, out + 3, size).ptr;
  }
  if (exponent < 0) {
    put("0.0000", 1 - exponent);
    put(text, used);
    return out;
  }
  const int whole = exponent + 1;
  if (used <= whole) {
    put(text, used);
    std::memset(out, '0', static_cast<std::size_t>(whole - used));
    return out + (whole - used);
  }
  put(text, whole);
  *out++ = '.';
  put(text + whole, used - whole);
  return out;
}

char* WriteFixed(std::uint64_t value, int decimals, char* out) {
  const std::uint64_t unit = decimal::PowerOfTen(decimals);
  out = std::to_chars(out, out + 20, value / unit).ptr;
  const std::uint64_t fraction = value % unit;
  if (fraction == 0)
    return out;
  *out++ = '.';
  WriteDigits(fraction, decimals, out);
  out += decimals;
  while (out[-1] == '0')
    --out;
  return out;
}

} // namespace vorrel::digits
