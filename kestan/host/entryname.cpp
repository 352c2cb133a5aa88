#include "kestan/host/entryname.h"

#include <algorithm>

namespace vorrel::kmz {

namespace {

/// What stands for the bytes from 0x80 on.
const char16_t kCodePage437[] = u"\u00C7\u00FC\u00E9\u00E2\u00E4\u00E0\u00E5\u00E7\u00EA\u00EB"
                                u"\u00E8\u00EF\u00EE\u00EC\u00C4\u00C5"
                                u"\u00C9\u00E6\u00C6\u00F4\u00F6\u00F2\u00FB\u00F9\u00FF\u00D6"
                                u"\u00DC\u00A2\u00A3\u00A5\u20A7\u0192"
                                u"\u00E1\u00ED\u00F3\u00FA\u00F1\u00D1\u00AA\u00BA\u00BF\u2310"
                                u"\u00AC\u00BD\u00BC\u00A1\u00AB\u00BB"
                                u"\u2591\u2592\u2593\u2502\u2524\u2561\u2562\u2556\u2555\u2563"
                                u"\u2551\u2557\u255D\u255C\u255B\u2510"
                                u"\u2514\u2534\u252C\u251C\u2500\u253C\u255E\u255F\u255A\u2554"
                                u"\u2569\u2566\u2560\u2550\u256C\u2567"
                                u"\u2568\u2564\u2565\u2559\u2558\u2552\u2553\u256B\u256A\u2518"
                                u"\u250C\u2588\u2584\u258C\u2590\u2580"
                                u"\u03B1\u00DF\u0393\u03C0\u03A3\u03C3\u00B5\u03C4\u03A6\u0398"
                                u"\u03A9\u03B4\u221E\u03C6\u03B5\u2229"
                                u"\u2261\u00B1\u2265\u2264\u2320\u2321\u00F7\u2248\u00B0\u2219"
                                u"\u00B7\u221A\u207F\u00B2\u25A0\u00A0";
static_assert(std::size(kCodePage437) == 0x80 + 1);

bool IsAscii(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

} // namespace

QString EntryPath(QString name) {
  name.replace(QLatin1Char('\\'), QLatin1Char('/'));
  int start = 0;
  for (;;) {
    if (name.size() > start && name[start] == QLatin1Char('/'))
      start += 1;
    else if (name.size() > start + 1 && name[start] == QLatin1Char('.') &&
             name[start + 1] == QLatin1Char('/'))
      start += 2;
    else
      return name.mid(start);
  }
}

QString PlainName(const QString& name) {
  const QString folded = EntryPath(name).toCaseFolded();
  if (IsAscii(folded))
    return folded;
  // Folding the case may take letters apart, and taking them apart may change their case.
  return folded.normalized(QString::NormalizationForm_D)
      .toCaseFolded()
      .normalized(QString::NormalizationForm_C);
}

QString DecodeCodePage437(const QByteArray& name) {
  QString text(name.size(), Qt::Uninitialized);
  std::transform(name.begin(), name.end(), text.begin(), [](char c) {
    const auto byte = static_cast<uchar>(c);
    return byte < 0x80 ? QChar(ushort(byte)) : QChar(ushort(kCodePage437[byte - 0x80]));
  });
  return text;
}

} // namespace vorrel::kmz
