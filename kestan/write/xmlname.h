#pragma once

#include <QStringView>

namespace vorrel::kestan {

class Utf8OStream;

/// White space of XML.
inline bool IsXmlSpace(QChar c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
/// Takes white space from the front of `text`.
void SkipSpace(QStringView& text);
bool IsNameStart(QChar c);
bool IsNameChar(QChar c);
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
