#include "kestan/write/xmltext.h"

#include "kestan/host/utf8ostream.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

bool IsXmlChar(unsigned c) {
  return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xD800) ||
         (c >= 0xE000 && c < 0xFFFE) || (c >= 0x10000 && c < 0x110000);
}

/// The character of "#60" or "#x3C", or 0.
unsigned NumericReference(QStringView name) {
  constexpr int kMaxDigits = 8;
  const bool isHex = name.size() > 1 && name[1] == 'x';
  const QStringView digits = name.mid(isHex ? 2 : 1);
  if (digits.isEmpty() || digits.size() > kMaxDigits)
    return 0;
  unsigned value = 0;
  for (const QChar digit : digits) {
    const unsigned c = digit.unicode();
    const unsigned letter = c | 0x20U;
    if (c >= '0' && c <= '9')
      value = value * (isHex ? 16 : 10) + (c - '0');
    else if (isHex && letter >= 'a' && letter <= 'f')
      value = value * 16 + (letter - 'a' + 10);
    else
      return 0;
  }
  return IsXmlChar(value) ? value : 0;
}

struct Reference {
  unsigned character = 0; ///< 0 when there's none.
  int length = 0;
};

/// The reference that begins with the "&" at the start of `text`.
Reference MatchReference(QStringView text) {
  constexpr int kMaxLength = 12;
  const QStringView head = text.left(kMaxLength);
  const auto semicolon = std::find(head.begin(), head.end(), QLatin1Char(';'));
  if (semicolon == head.end())
    return {};
  const int length = static_cast<int>(semicolon - head.begin()) + 1;
  const QStringView name = head.mid(1, length - 2);
  if (!name.isEmpty() && name.front() == '#')
    return {NumericReference(name), length};
  if (name == QLatin1String("amp"))
    return {'&', length};
  if (name == QLatin1String("lt"))
    return {'<', length};
  if (name == QLatin1String("gt"))
    return {'>', length};
  if (name == QLatin1String("quot"))
    return {'"', length};
  if (name == QLatin1String("apos"))
    return {'\'', length};
  return {};
}

void Write(Utf8OStream& stream, QStringView text) { stream.Write(text.begin(), text.end()); }

} // namespace

QString DecodeReferences(QStringView text) {
  QString decoded;
  decoded.reserve(static_cast<int>(text.size()));
  for (qsizetype i = 0; i < text.size();) {
    const Reference reference = text[i] == '&' ? MatchReference(text.mid(i)) : Reference();
    if (reference.character == 0) {
      decoded.append(text[i++]);
    } else if (QChar::requiresSurrogates(reference.character)) {
      decoded.append(QChar(QChar::highSurrogate(reference.character)));
      decoded.append(QChar(QChar::lowSurrogate(reference.character)));
      i += reference.length;
    } else {
      decoded.append(QChar(reference.character));
      i += reference.length;
    }
  }
  return decoded;
}

void WriteEscapedText(Utf8OStream& stream, QStringView text) {
  if (stream.IsInAttribute()) {
    XmlUtf8OStream(stream) << DecodeReferences(text);
    return;
  }
  qsizetype begin = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const char* replacement = nullptr;
    switch (text[i].unicode()) {
    case '&':
      if (MatchReference(text.mid(i)).character == 0)
        replacement = "&amp;";
      break;
    case '<':
      replacement = "&lt;";
      break;
    case '\r':
      replacement = "&#13;";
      break;
    case '>':
      if (i >= 2 && text[i - 1] == ']' && text[i - 2] == ']')
        replacement = "&gt;";
      break;
    default:
      break;
    }
    if (replacement) {
      Write(stream, text.mid(begin, i - begin));
      stream << replacement;
      begin = i + 1;
    }
  }
  Write(stream, text.mid(begin));
}

void WriteCdataSection(Utf8OStream& stream, QStringView text) {
  stream << "<![CDATA[";
  qsizetype begin = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == '\r') {
      Write(stream, text.mid(begin, i - begin));
      stream << "]]>&#13;<![CDATA[";
      begin = i + 1;
    } else if (text[i] == '>' && i >= begin + 2 && text[i - 1] == ']' && text[i - 2] == ']') {
      Write(stream, text.mid(begin, i - begin));
      stream << "]]><![CDATA[";
      begin = i;
    }
  }
  Write(stream, text.mid(begin));
  stream << "]]>";
}

} // namespace vorrel::kestan
