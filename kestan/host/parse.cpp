#include "kestan/host/parse.h"

#include "kestan/host/decimal.h"

#include <QChar>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <system_error>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vorrel::math {

namespace {

constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};

bool IsSpace(ushort unit) {
  return unit == ' ' || (unit >= '\t' && unit <= '\r') || (unit >= 0x80 && QChar(unit).isSpace());
}

bool IsDigit(ushort unit) { return static_cast<ushort>(unit - '0') < 10; }

bool EndsComponent(const ushort* at, const ushort* end) {
  return at == end || *at == ',' || IsSpace(*at);
}

inline const ushort* SkipSpace(const ushort* at, const ushort* end) {
  while (at != end && IsSpace(*at))
    ++at;
  return at;
}

inline bool HasLineBreak(const ushort* at, const ushort* end) {
  return std::any_of(at, end, [](ushort unit) { return unit == '\n' || unit == '\r'; });
}

/// Moves `at` over the digits that stand there, appending them to `value`; it may overflow.
inline void TakeDigits(const ushort*& at, const ushort* end, std::uint64_t& value) {
  for (; at != end && IsDigit(*at); ++at)
    value = value * 10 + static_cast<std::uint64_t>(*at - '0');
}

/// What a scan found out about a number: its first digits as an integer, and the power of ten to
/// multiply them with. `digitCount` counts from the first digit that isn't 0.
struct Scan {
  const ushort* digits = nullptr;
  const ushort* digitsEnd = nullptr;
  std::uint64_t mantissa = 0;
  std::ptrdiff_t digitCount = 0;
  std::ptrdiff_t exponent = 0;
  bool negative = false;
};

constexpr int kMantissaDigits = 19;
// No text has as many digits as would bring the number back from here.
constexpr std::ptrdiff_t kExponentLimit = std::ptrdiff_t(1) << 48;

/// Reads the exponent behind an "e". False when there is none.
bool ScanExponent(const ushort*& at, const ushort* end, std::ptrdiff_t& exponent) {
  bool negative = false;
  if (at != end && (*at == '+' || *at == '-'))
    negative = *at++ == '-';
  if (at == end || !IsDigit(*at))
    return false;
  std::ptrdiff_t size = 0;
  for (; at != end && IsDigit(*at); ++at)
    size = size < kExponentLimit ? size * 10 + (*at - '0') : size;
  exponent = negative ? -size : size;
  return true;
}

/// Takes the number at `at` and moves `at` behind it. False when no number begins here.
bool ScanNumber(const ushort*& at, const ushort* end, Scan& scan) {
  const ushort* p = at;
  if (p != end && (*p == '+' || *p == '-'))
    scan.negative = *p++ == '-';
  scan.digits = p;
  const ushort* point = nullptr;
  std::uint64_t mantissa = 0;
  TakeDigits(p, end, mantissa);
  if (p != end && *p == '.') {
    point = p++;
    TakeDigits(p, end, mantissa);
  }
  scan.digitsEnd = p;
  const std::ptrdiff_t written = (p - scan.digits) - (point ? 1 : 0);
  if (written == 0)
    return false;
  std::ptrdiff_t exponent = point ? point + 1 - p : 0;
  if (p != end && (*p == 'e' || *p == 'E')) {
    std::ptrdiff_t given = 0;
    if (!ScanExponent(++p, end, given))
      return false;
    exponent += given;
  }
  at = p;

  scan.digitCount = written;
  if (written > kMantissaDigits) {
    // The sum may have run over; zeros in front don't count.
    const ushort* first = scan.digits;
    while (first != scan.digitsEnd && (*first == '0' || *first == '.')) {
      scan.digitCount -= *first == '0' ? 1 : 0;
      ++first;
    }
    scan.digits = first;
  }
  scan.mantissa = mantissa;
  scan.exponent = exponent;
  return true;
}

/// Converts a number of many digits or of unusual size. False when it is too large.
bool ConvertSlowly(const Scan& scan, double& value) {
  // More digits than this never change the rounding, except by not all being 0.
  constexpr int kEnoughDigits = 800;
  char text[kEnoughDigits + 24];
  char* out = text;
  std::ptrdiff_t dropped = 0;
  bool rest = false;
  for (const ushort* p = scan.digits; p != scan.digitsEnd; ++p) {
    if (*p == '.' || (out == text && *p == '0'))
      continue;
    if (out - text < kEnoughDigits) {
      *out++ = static_cast<char>(*p);
    } else {
      ++dropped;
      rest = rest || *p != '0';
    }
  }
  value = 0.0;
  if (out == text)
    return true;
  const std::ptrdiff_t firstExponent = scan.exponent + dropped + (out - text) - 1;
  if (rest) {
    *out++ = '1';
    --dropped;
  }
  constexpr int kLargest = std::numeric_limits<double>::max_exponent10;
  if (firstExponent > kLargest)
    return false;
  if (firstExponent < -400)
    return true;
  *out++ = 'e';
  out = std::to_chars(out, text + sizeof text, scan.exponent + dropped).ptr;
  const auto result = std::from_chars(text, out, value);
  if (result.ec == std::errc::result_out_of_range)
    value = firstExponent > 0 ? std::numeric_limits<double>::max() : 0.0;
  return true;
}

/// False when the number is too large.
bool Convert(const Scan& scan, double& value) {
  constexpr int kPower = decimal::kMaxExactPower;
  if (scan.digitCount <= kMantissaDigits && scan.exponent >= -kPower && scan.exponent <= kPower)
    value = decimal::ToDouble(scan.mantissa, static_cast<int>(scan.exponent));
  else if (!ConvertSlowly(scan, value))
    return false;
  if (scan.negative)
    value = -value;
  return true;
}

#ifdef __SSE2__

/// Sixteen units as the digits that they stand for.
struct DigitWindow {
  explicit DigitWindow(const ushort* at) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 8));
    // What isn't Latin-1 becomes 0 or 255, which are no digits either.
    const __m128i values = _mm_sub_epi8(_mm_packus_epi16(low, high), _mm_set1_epi8('0'));
    const __m128i digits = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
    others = static_cast<unsigned>(_mm_movemask_epi8(digits)) ^ 0xFFFF;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), values);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes + 16), _mm_setzero_si128());
  }

  /// The value of the `count` digits (1 to 8) from the one at `first` on.
  double Take(std::ptrdiff_t first, int count) const {
    std::uint64_t word;
    std::memcpy(&word, bytes + first, sizeof word);
    // With zeros in front there are always eight of them: pairs, fours, and then all.
    word <<= 64 - 8 * count;
    word = word * 10 + (word >> 8);
    constexpr std::uint64_t kEveryOther = 0x000000FF000000FF;
    constexpr std::uint64_t kFirst = 100 + (std::uint64_t(1000000) << 32);
    constexpr std::uint64_t kSecond = 1 + (std::uint64_t(10000) << 32);
    return static_cast<double>(static_cast<std::uint32_t>(
        ((word & kEveryOther) * kFirst + ((word >> 16) & kEveryOther) * kSecond) >> 32));
  }

  unsigned char bytes[16 + 8]; ///< And as many zeros as a look at the last ones goes beyond.
  unsigned others;             ///< One bit for each that is no digit.
};

/// Reads a component in the form that nearly all have: a sign or none, at most eight digits, and
/// at most eight behind a point. False, with `at` where it was, for any other.
///
/// Where the next component begins depends on few steps and on no loop, so that the processor can
/// work on several components at a time.
inline bool ParsePlainComponent(const ushort*& at, const ushort* end, double& value) {
  constexpr std::ptrdiff_t kWindow = 16;
  if (end - at < kWindow)
    return false;
  const unsigned negative = *at == '-' ? 1 : 0;
  const DigitWindow window(at);
  const unsigned others = window.others >> negative;
  const int wholeCount = std::countr_zero(others);
  if (wholeCount == 0 || wholeCount > 8)
    return false;
  const ushort* p = at + negative + wholeCount;
  double size = window.Take(negative, wholeCount);
  if (*p == '.') {
    const int count = std::countr_zero(others & (others - 1)) - wholeCount - 1;
    if (count < 1 || count > 8)
      return false;
    // The window leaves fourteen digits at most. They are exact, and so is the power: the one
    // division rounds correctly.
    const double power = kPowers[count];
    size = (size * power + window.Take(p + 1 - at, count)) / power;
    p += 1 + count;
  }
  if (!EndsComponent(p, end))
    return false;
  // The sign goes in as a bit: half of the branches on it would be foreseen wrongly.
  const std::uint64_t sign = static_cast<std::uint64_t>(negative) << 63;
  value = std::bit_cast<double>(std::bit_cast<std::uint64_t>(size) | sign);
  at = p;
  return true;
}

#else

inline bool ParsePlainComponent(const ushort*&, const ushort*, double&) { return false; }

#endif

/// Reads one component and moves `at` to what ended it. False when it is no number.
bool ParseComponent(const ushort*& at, const ushort* end, double& value) {
  if (ParsePlainComponent(at, end, value))
    return true;
  Scan scan;
  if (ScanNumber(at, end, scan) && EndsComponent(at, end))
    return Convert(scan, value);
  while (!EndsComponent(at, end))
    ++at;
  return false;
}

} // namespace

bool ParseDouble(const ushort* begin, const ushort* end, double& value) {
  begin = SkipSpace(begin, end);
  while (end != begin && IsSpace(end[-1]))
    --end;
  Scan scan;
  double parsed = 0.0;
  if (!ScanNumber(begin, end, scan) || begin != end || !Convert(scan, parsed))
    return false;
  value = parsed;
  return true;
}

bool ParseFloat(const QString& text, float& value) {
  double wide = 0.0;
  if (!ParseDouble(text, wide))
    return false;
  const auto narrow = static_cast<float>(wide);
  if (!std::isfinite(narrow))
    return false;
  value = narrow;
  return true;
}

const ushort* ParseUtf16ToVec3(const ushort* text, const ushort* end, Vec3<double>& out,
                               int components, int optional) {
  out = Vec3<double>();
  const ushort* at = text;
  for (;;) {
    at = SkipSpace(at, end);
    if (at == end)
      return nullptr;
    if (ParseComponent(at, end, out.x))
      break;
    while (at != end && !IsSpace(*at))
      ++at;
  }
  bool hasCommas = false;
  for (int i = 1; i < components; ++i) {
    at = SkipSpace(at, end);
    if (at == end)
      return at;
    if (*at == ',') {
      const ushort* const comma = at;
      at = SkipSpace(comma + 1, end);
      // Two numbers are a position: behind a comma that was left over, the next line has its own.
      if (i >= 2 && HasLineBreak(comma + 1, at))
        return at;
      hasCommas = true;
    } else if (hasCommas || i >= components - optional) {
      return at;
    }
    double value = 0.0;
    if (ParseComponent(at, end, value))
      out[i] = value;
  }
  // Further components of the tuple have no meaning.
  while (at != end && !IsSpace(*at))
    ++at;
  return SkipSpace(at, end);
}

} // namespace vorrel::math
