#include "kestan/host/coordinateformat.h"

#include "kestan/host/digits.h"
#include "kestan/host/numberformat.h"
#include "kestan/host/units.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace vorrel::coordinate {

const Kind kDegrees = {180.0, 1e12, 999.0, 12};
const Kind kAltitude = {Units::s_planet_radius, 1e9, 999999.0, 9};

namespace {

/// A number that was written with few decimals is found by one rounding: `units` counts the last
/// decimal place. False when the text needs more than that.
bool FindFewDecimals(double stored, const Kind& kind, std::uint64_t& units, double& written) {
  const double product = std::fabs(stored) * kind.scale;
  if (!(product < kind.decimalLimit))
    return false;
  units = static_cast<std::uint64_t>(product * kind.decimalUnit + 0.5);
  written = static_cast<double>(units) / kind.decimalUnit;
  return written / kind.scale == std::fabs(stored);
}

/// A positive double that is stored as `stored`. Where none is, `stored` moves to the next value
/// that has one.
double FindWritten(double& stored, double scale) {
  const double product = std::fmin(stored * scale, std::numeric_limits<double>::max());
  if (product / scale == stored)
    return product;
  for (const double toward : {0.0, std::numeric_limits<double>::infinity()}) {
    const double neighbour = std::nextafter(product, toward);
    if (neighbour / scale == stored)
      return neighbour;
  }
  stored = product / scale;
  return product;
}

/// The slow way, for numbers of unusual size: the first of three lengths that reads back.
char* WriteAnySize(double written, double stored, double scale, char* out) {
  for (const int count : {15, 16, 17}) {
    char* const end =
        std::to_chars(out, out + kMaxNumberLength, written, std::chars_format::general, count).ptr;
    double read = 0.0;
    if (std::from_chars(out, end, read).ec == std::errc() && read / scale == stored)
      return end;
  }
  // Seventeen digits give back any double, so this is not reached.
  return digits::WriteFixed(0, 0, out);
}

/// Finds the shortest decimal that reads back as `stored`, near the number `written`, which does.
bool FindShortest(double written, double stored, double scale, decimal::Decimal& found) {
  constexpr int kCount = 16;
  decimal::Decimal nearest;
  if (!decimal::Round(written, kCount, nearest))
    return false;
  const int exponent = nearest.exponent - (kCount - 1);
  const auto readsBack = [&](std::uint64_t digits) {
    return decimal::ToDouble(digits, exponent) / scale == stored;
  };
  found.exponent = nearest.exponent;

  // A text of 15 digits is never further away than the roundings of reading and scaling.
  const std::uint64_t last = nearest.digits % 10;
  if (last <= 3 || last >= 7) {
    found.digits = nearest.digits - last + (last >= 7 ? 10 : 0);
    if (readsBack(found.digits))
      return true;
  }
  for (const int step : {0, 1, -1, 2, -2}) {
    found.digits = nearest.digits + static_cast<std::uint64_t>(step);
    if (readsBack(found.digits))
      return true;
  }
  return false;
}

} // namespace

double Denormalize(double stored, const Kind& kind) {
  std::uint64_t units = 0;
  double written = 0.0;
  if (FindFewDecimals(stored, kind, units, written))
    return std::copysign(written, stored);
  if (!std::isfinite(stored))
    return stored * kind.scale;
  char text[kMaxNumberLength];
  std::from_chars(text, Write(stored, kind, text), written);
  return written;
}

char* Write(double stored, const Kind& kind, char* out) {
  std::uint64_t units = 0;
  double written = 0.0;
  if (!std::isfinite(stored))
    stored = 0.0;
  if (std::signbit(stored))
    *out++ = '-';
  if (FindFewDecimals(stored, kind, units, written))
    return digits::WriteFixed(units, kind.decimals, out);

  stored = std::fabs(stored);
  written = FindWritten(stored, kind.scale);
  decimal::Decimal shortest;
  if (FindShortest(written, stored, kind.scale, shortest)) {
    // Rounding up may have carried into a digit more.
    if (shortest.digits == decimal::PowerOfTen(16))
      shortest = {shortest.digits / 10, shortest.exponent + 1};
    return digits::WriteGeneral(shortest, 16, 16, out);
  }
  return WriteAnySize(written, stored, kind.scale, out);
}

} // namespace vorrel::coordinate
