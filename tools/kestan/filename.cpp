#include "tools/kestan/filename.h"

namespace tool {

namespace {

constexpr ushort kByte = 0xDC00; ///< Added to a byte from 128 on, it's half of a pair.

} // namespace

QString DecodeName(const char* name) {
  QString text = QString::fromUtf8(name);
  if (text.toUtf8() == name) {
    return text;
  }
  text.clear();
  for (const char* at = name; *at; ++at) {
    const auto byte = static_cast<unsigned char>(*at);
    text += QChar(static_cast<ushort>(byte < 0x80 ? byte : kByte + byte));
  }
  return text;
}

QByteArray EncodeName(const QString& name) {
  if (IsText(name)) {
    return name.toUtf8();
  }
  QByteArray bytes;
  for (const QChar c : name) {
    bytes += static_cast<char>(c.unicode() > kByte ? c.unicode() - kByte : c.unicode());
  }
  return bytes;
}

bool IsText(const QString& name) { return name.isValidUtf16(); }

} // namespace tool
