#pragma once

#include <QStringView>

namespace vorrel::kestan {

class Utf8OStream;

/// White space of XML.
inline bool IsXmlSpace(QChar c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
inline bool IsNameStart(QChar c) { return c == '_' || c == ':' || c.isLetter(); }
inline bool IsNameChar(QChar c) {
  return IsNameStart(c) || c == '-' || c == '.' || c.isDigit() || c.isMark() || c == QChar(0xB7);
}
/// True for a name without a colon.
bool IsNcName(QStringView name);

/// The two parts of the name of an element or attribute. Colons beyond the one that parts them
/// aren't allowed where namespaces count, and are written as "_".
struct XmlName {
  explicit XmlName(QStringView name);

  void Write(Utf8OStream& stream) const { Write(stream, prefix); }
  /// Writes the name with another prefix.
  void Write(Utf8OStream& stream, QStringView otherPrefix) const;

  QStringView prefix; ///< May be empty.
  QStringView local;
};

} // namespace vorrel::kestan
