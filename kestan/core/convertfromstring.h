#pragma once

#include "kestan/core/color32.h"
#include "kestan/host/datetime.h"
#include "kestan/host/export.h"
#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/vec3.h"

#include <QString>

namespace vorrel::kestan {

/// Converts a KML text in place. False, and the target unchanged, when it doesn't convert. "inf"
/// and "nan" are no numbers, in whatever form: a document has no place for them.
template <class T> bool ConvertFromString(const QString& text, T& value);

template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, int& value);
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, unsigned int& value);
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, unsigned short& value);
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, long long& value);
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, float& value);
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, double& value);
/// "true" and "1", in any case and between blanks, are true; all else is false.
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, bool& value);
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, QString& value);
/// Eight hexadecimal digits aabbggrr, bare or behind "#" or "0x".
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, Color32& value);
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, DateTime& value);
/// Up to three numbers; missing ones are 0.
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, Vec3<double>& value);
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, Vec3<float>& value);

/// Always false: a screen position stands in attributes, and has no text.
template <> KESTAN_EXPORT bool ConvertFromString(const QString& text, LegacyScreenVec& value);

/// The value of a text; the zero of `T` when it doesn't convert.
template <class T> T ValueFromString(const QString& text) {
  T value{};
  ConvertFromString(text, value);
  return value;
}

} // namespace vorrel::kestan
