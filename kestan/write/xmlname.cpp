#include "kestan/write/xmlname.h"

#include "kestan/host/utf8ostream.h"

#include <algorithm>

namespace vorrel::kestan {

void SkipSpace(QStringView& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsXmlSpace);
  text = text.mid(end - text.begin());
}

bool IsNameStart(QChar c) {
  if (c == '_' || c == ':' || c.isLetter())
    return true;
  // To XML these are letters too.
  const ushort u = c.unicode();
  return u == 0x212E || (u >= 0x2180 && u <= 0x2182) || u == 0x3007 || (u >= 0x3021 && u <= 0x3029);
}

bool IsNameChar(QChar c) {
  if (IsNameStart(c) || c == '-' || c == '.' || c.isDigit() || c.isMark())
    return true;
  const ushort u = c.unicode();
  return u == 0xB7 || u == 0x387 || u == 0x6DD || u == 0x6DE;
}

bool IsNcName(QStringView name) {
  return !name.isEmpty() && name.front() != ':' && IsNameStart(name.front()) &&
         std::all_of(name.begin(), name.end(), [](QChar c) { return c != ':' && IsNameChar(c); });
}

XmlName::XmlName(QStringView name) : local(name) {
  const auto colon = std::find(name.begin(), name.end(), QLatin1Char(':'));
  if (colon == name.begin() || colon == name.end())
    return;
  const auto position = colon - name.begin();
  const QStringView first = name.left(position);
  const QStringView rest = name.mid(position + 1);
  if (first == QLatin1String("xmlns") || rest.isEmpty() || rest.front() == ':' ||
      !IsNameStart(rest.front()))
    return;
  prefix = first;
  local = rest;
}

void XmlName::Write(Utf8OStream& stream, QStringView otherPrefix) const {
  if (!otherPrefix.isEmpty()) {
    stream.Write(otherPrefix.begin(), otherPrefix.end());
    stream << ":";
  }
  auto at = local.begin();
  while (true) {
    const auto colon = std::find(at, local.end(), QLatin1Char(':'));
    stream.Write(at, colon);
    if (colon == local.end())
      return;
    stream << "_";
    at = colon + 1;
  }
}

} // namespace vorrel::kestan
