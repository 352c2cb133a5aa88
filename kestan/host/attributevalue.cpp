#include "kestan/host/attributevalue.h"

namespace vorrel::kestan {

const char* GetAttributeReference(ushort c) {
  switch (c) {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  case '\'':
    return "&apos;";
  case '"':
    return "&quot;";
  case '\t':
    return "&#9;";
  case '\n':
    return "&#10;";
  case '\r':
    return "&#13;";
  default:
    return nullptr;
  }
}

void AppendAttributeValue(QString& out, const QString& text) {
  for (const QChar c : text) {
    if (const char* const reference = GetAttributeReference(c.unicode()))
      out += QLatin1String(reference);
    else
      out += c;
  }
}

QString EscapeAttributeValue(const QString& text) {
  QString escaped;
  escaped.reserve(text.size());
  AppendAttributeValue(escaped, text);
  return escaped;
}

} // namespace vorrel::kestan
