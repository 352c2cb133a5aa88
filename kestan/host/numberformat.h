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

} // namespace vorrel
