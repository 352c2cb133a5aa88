#include "kestan/core/convertfromstring.h"

#include "kestan/host/parse.h"

namespace vorrel::kestan {

namespace {

/// Stores what `parse` answers when it reports success.
template <class T, class Parse> bool Convert(T& value, Parse parse) {
  bool ok = false;
  const T parsed = parse(&ok);
  if (ok)
    value = parsed;
  return ok;
}

} // namespace

template <> bool ConvertFromString(const QString& text, int& value) {
  return Convert(value, [&](bool* ok) { return text.toInt(ok, 10); });
}

template <> bool ConvertFromString(const QString& text, unsigned int& value) {
  return Convert(value, [&](bool* ok) { return text.toUInt(ok, 10); });
}

template <> bool ConvertFromString(const QString& text, unsigned short& value) {
  return Convert(value, [&](bool* ok) { return text.toUShort(ok, 10); });
}

template <> bool ConvertFromString(const QString& text, long long& value) {
  return Convert(value, [&](bool* ok) { return text.toLongLong(ok, 10); });
}

template <> bool ConvertFromString(const QString& text, double& value) {
  return math::ParseDouble(text, value);
}

template <> bool ConvertFromString(const QString& text, float& value) {
  return math::ParseFloat(text, value);
}

template <> bool ConvertFromString(const QString& text, bool& value) {
  const QString word = text.trimmed();
  value =
      word == QLatin1String("1") || word.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
  return true;
}

template <> bool ConvertFromString(const QString& text, QString& value) {
  value = text;
  return true;
}

template <> bool ConvertFromString(const QString& text, Color32& value) {
  QString digits = text;
  if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
    digits.remove(0, 2);
  if (digits.startsWith(QLatin1Char('#')))
    digits.remove(0, 1);
  return Convert(value, [&](bool* ok) { return Color32(digits.toUInt(ok, 16)); });
}

template <> bool ConvertFromString(const QString& text, DateTime& value) {
  const DateTime parsed = DateTime::FromString(text);
  if (parsed.isUndefined())
    return false;
  value = parsed;
  return true;
}

template <> bool ConvertFromString(const QString& text, Vec3<double>& value) {
  const ushort* units = math::Units(text);
  Vec3<double> parsed{0.0, 0.0, 0.0};
  if (!math::ParseUtf16ToVec3(units, units + text.size(), parsed, 3, 0))
    return false;
  value = parsed;
  return true;
}

template <> bool ConvertFromString(const QString& text, Vec3<float>& value) {
  Vec3<double> wide{0.0, 0.0, 0.0};
  if (!ConvertFromString(text, wide))
    return false;
  value = {static_cast<float>(wide.x), static_cast<float>(wide.y), static_cast<float>(wide.z)};
  return true;
}

template <> bool ConvertFromString(const QString&, LegacyScreenVec&) { return false; }

} // namespace vorrel::kestan
