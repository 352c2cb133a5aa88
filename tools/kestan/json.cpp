#include "tools/kestan/json.h"

namespace tool {

QByteArray JsonText(const QString& text) {
  QString escaped;
  escaped.reserve(text.size() + 2);
  escaped += QLatin1Char('"');
  for (int i = 0; i < text.size(); ++i) {
    const QChar character = text[i];
    if (character == QLatin1Char('"') || character == QLatin1Char('\\')) {
      escaped += QLatin1Char('\\');
      escaped += character;
    } else if (character < QLatin1Char(' ')) {
      escaped += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    } else if (character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
      escaped += character;
      escaped += text[++i];
    } else {
      escaped += character.isSurrogate() ? QChar(QChar::ReplacementCharacter) : character;
    }
  }
  escaped += QLatin1Char('"');
  return escaped.toUtf8();
}

JsonObject& JsonObject::Add(const QByteArray& quotedKey, const QByteArray& value) {
  if (text_.size() > 1) {
    text_ += ',';
  }
  text_ += quotedKey;
  text_ += ':';
  text_ += value;
  return *this;
}

JsonObject& JsonObject::Add(const char* key, const QByteArray& value) {
  return Add('"' + QByteArray(key) + '"', value);
}

} // namespace tool
