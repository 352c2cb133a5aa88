#pragma once

#include "kestan/host/decimal.h"

/// Digits to characters. Each function answers the end of what it wrote.
namespace vorrel::digits {

/// Writes a decimal of `count` digits as "%.<precision>g" lays it out: with an exponent when it is
/// below -4 or at least `precision`, and without trailing zeros. The digits may be 0 in front.
char* WriteGeneral(decimal::Decimal value, int count, int precision, char* out);

/// Writes `value` / 10^`decimals` without an exponent and without trailing zeros.
char* WriteFixed(std::uint64_t value, int decimals, char* out);

} // namespace vorrel::digits
