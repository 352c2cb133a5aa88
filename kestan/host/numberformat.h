#pragma once

#include "kestan/host/export.h"

#include <cstddef>

/// Numbers to text, in the notation of the C locale whatever the locale of the process is.
///
/// Each function writes at most `kMaxNumberLength` characters, without a zero behind them, and
/// answers their count. None of them allocates.
namespace vorrel {

constexpr std::size_t kMaxNumberLength = 32;

/// The characters of "%.16lg".
KESTAN_EXPORT int FormatDouble(double value, char* buffer);
/// The characters of "%g".
KESTAN_EXPORT int FormatFloat(float value, char* buffer);
/// The characters of "%lld".
KESTAN_EXPORT int FormatInt(long long value, char* buffer);
/// The characters of "%llu".
KESTAN_EXPORT int FormatUInt(unsigned long long value, char* buffer);

/// The shortest text that reads back as this very number, preferring 15, then 16, then 17 digits.
///
/// A number with at most 15 digits, as people write coordinates, comes back digit for digit; a
/// multiple of 1e-12 is written without an exponent. A negative zero is "-0". A number that is not
/// finite has no text that reads back, and is written as "0".
KESTAN_EXPORT int FormatCoordinate(double value, char* buffer);

} // namespace vorrel
