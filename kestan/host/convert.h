#pragma once

#include "kestan/host/export.h"
#include "kestan/host/vec3.h"

#include <cstddef>

/// Positions between the file's form (longitude and latitude in degrees, altitude in metres) and
/// the normalised form (degrees divided by 180, metres divided by the planet's radius).
///
/// The two are inverse for whatever text people write: a number of at most 15 digits comes back
/// digit for digit, and one of more digits comes back to the same normalised value. So a position
/// stays where it is however often a document is read and written.
namespace vorrel::convert {

KESTAN_EXPORT Vec3<double> LLAToNorm(const Vec3<double>& lla);
/// The components are the numbers of which `FormatNormLLA` writes the text.
KESTAN_EXPORT Vec3<double> NormToLLA(const Vec3<double>& norm);

} // namespace vorrel::convert

namespace vorrel {

constexpr std::size_t kMaxNormLLALength = 96;

/// Writes longitude, latitude and altitude of a normalised position with `separator` between
/// them. Answers the count of characters, at most `kMaxNormLLALength`; there is no zero behind
/// them.
///
/// Each is the shortest text that reads back as the stored number, of 15, 16 or 17 digits: what
/// people write comes back digit for digit. A multiple of 1e-12 is written without an exponent, a
/// negative zero as "-0", and a number that isn't finite, which has no text, as "0".
KESTAN_EXPORT int FormatNormLLA(const Vec3<double>& norm, char separator, char* buffer);

} // namespace vorrel
