#pragma once

#include "kestan/host/export.h"
#include "kestan/host/vec3.h"

#include <QString>

/// Numbers from UTF-16 text, in the notation of the C locale.
///
/// A number is an optional sign, digits with at most one point among, before or behind them, and
/// an optional exponent. "inf", "nan" and hexadecimal notation are no numbers. Rounding is exact. A
/// number too small for a double is 0; one too large is no number, except that the last decade
/// counts as the largest double, to which "%.16lg" gives a text that is slightly too large.
namespace vorrel::math {

/// The characters of a text. Unlike `QString::utf16` this doesn't copy text that lies in somebody
/// else's buffer; there may be no 0 behind it.
inline const ushort* Units(const QString& text) {
  return reinterpret_cast<const ushort*>(text.constData());
}

/// True, and the value, when the whole text but for white space around it is a number.
KESTAN_EXPORT bool ParseDouble(const ushort* begin, const ushort* end, double& value);
inline bool ParseDouble(const QString& text, double& value) {
  return ParseDouble(Units(text), Units(text) + text.size(), value);
}
/// The same for a float; a number outside the range of float is none.
KESTAN_EXPORT bool ParseFloat(const QString& text, float& value);

/// Reads the next tuple of up to `components` numbers (1 to 3) from `text` to `end`.
///
/// Numbers stand behind each other with a comma between them; blanks may surround it. The first
/// `components` - `optional` may also be parted by blanks alone; the others only follow a comma,
/// and so do all others once one did, so that a blank ends a tuple that leaves them out. So does a
/// comma behind two numbers with a line break behind it. Components that are left out are 0, and so
/// is one that is empty or no number. A tuple begins with a number: what stands before it up to a
/// blank is passed over.
///
/// Answers where the next tuple may begin, past white space; null, with `out` all 0, when no
/// further number stands in the text. Each call makes progress.
KESTAN_EXPORT const ushort* ParseUtf16ToVec3(const ushort* text, const ushort* end,
                                             Vec3<double>& out, int components, int optional);

/// The first tuple of a whole text, for a single position; zeros when there is none.
inline void ParseUtf16ToVec3(const QString& text, Vec3<double>& out, int components, int optional) {
  ParseUtf16ToVec3(Units(text), Units(text) + text.size(), out, components, optional);
}

} // namespace vorrel::math
