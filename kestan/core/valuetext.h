#pragma once

#include "kestan/core/color32.h"
#include "kestan/host/datetime.h"
#include "kestan/host/export.h"
#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/vec3.h"

#include <QString>

namespace vorrel::kestan {

class Utf8OStream;

/// The text of a value, as it stands in a document. Numbers don't depend on the locale; one that
/// isn't finite has no text, and 0 stands for it. Strings are escaped.
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, int value);
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, unsigned int value);
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, unsigned short value);
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, long long value);
/// "0" or "1".
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, bool value);
/// Six significant digits.
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, float value);
/// Sixteen significant digits.
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, double value);
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, const QString& value);
/// Eight hexadecimal digits.
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, Color32 value);
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, const DateTime& value);
/// Three numbers with commas between them.
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, const Vec3<double>& value);
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, const Vec3<float>& value);
/// The elements `x` and `y`, each with its unit as attribute.
KESTAN_EXPORT void WriteValueText(Utf8OStream& stream, const LegacyScreenVec& value);

} // namespace vorrel::kestan
