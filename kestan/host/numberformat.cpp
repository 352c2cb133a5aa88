#include "kestan/host/numberformat.h"

#include "kestan/host/digits.h"

#include <charconv>
#include <cmath>

namespace vorrel {

namespace {

/// The characters of "%.<count>g".
int FormatGeneral(double value, int count, char* buffer) {
  char* end = buffer;
  if (std::signbit(value)) {
    *end++ = '-';
    value = -value;
  }
  decimal::Decimal rounded;
  if (value == 0.0)
    *end++ = '0';
  else if (decimal::Round(value, count, rounded))
    end = digits::WriteGeneral(rounded, count, count, end);
  else
    end =
        std::to_chars(end, buffer + kMaxNumberLength, value, std::chars_format::general, count).ptr;
  return static_cast<int>(end - buffer);
}

} // namespace

int FormatDouble(double value, char* buffer) { return FormatGeneral(value, 16, buffer); }

int FormatFloat(float value, char* buffer) {
  return FormatGeneral(static_cast<double>(value), 6, buffer);
}

int FormatInt(long long value, char* buffer) {
  return static_cast<int>(std::to_chars(buffer, buffer + kMaxNumberLength, value).ptr - buffer);
}

} // namespace vorrel
