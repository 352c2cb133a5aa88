#include "kestan/host/path.h"

#include <QStringList>

namespace vorrel::file {

namespace {

bool IsSlash(QChar c) { return c == QLatin1Char('/') || c == QLatin1Char('\\'); }

bool IsLetter(QChar c) { return c.unicode() < 0x80 && c.isLetter(); }

/// How many characters belong to a scheme in front of ":"; 0 when there is none. A single letter
/// is a drive.
int SchemeLength(const QString& text) {
  int i = 0;
  while (i < text.size() && (IsLetter(text[i]) || (i > 0 && (text[i].isDigit() || text[i] == '+' ||
                                                             text[i] == '-' || text[i] == '.'))))
    ++i;
  return i > 1 && i < text.size() && text[i] == QLatin1Char(':') ? i : 0;
}

int IndexOfSlash(const QString& text, int from, int end) {
  while (from < end && !IsSlash(text[from]))
    ++from;
  return from;
}

/// Where the path begins that may be rewritten; the text's end when there is none.
int PathStart(const QString& text, int end) {
  const int scheme = SchemeLength(text);
  if (scheme > 0) {
    const bool hasServer =
        scheme + 2 < end && IsSlash(text[scheme + 1]) && IsSlash(text[scheme + 2]);
    return hasServer ? IndexOfSlash(text, scheme + 3, end) : end;
  }
  if (end > 2 && IsSlash(text[0]) && IsSlash(text[1]) && !IsSlash(text[2]))
    return IndexOfSlash(text, 2, end);
  // Drives have letters; what else looks like one is taken for one by whoever classifies URLs.
  const bool isDrive = end > 1 && text[1] == QLatin1Char(':') &&
                       (IsLetter(text[0]) || (end > 2 && !IsSlash(text[0]) && IsSlash(text[2])));
  if (isDrive)
    return 2;
  return 0;
}

/// Whether there is anything to do; most paths are plain already.
bool NeedsCleanup(const QString& text, int start, int end) {
  for (int i = start; i < end; ++i) {
    if (text[i] == QLatin1Char('\\'))
      return true;
    const bool begins = i == start || text[i - 1] == QLatin1Char('/');
    if (begins && (text[i] == QLatin1Char('.') || (i > start && text[i] == QLatin1Char('/'))))
      return true;
  }
  return false;
}

QString CleanParts(const QString& path) {
  const bool rooted = path.startsWith(QLatin1Char('/'));
  QStringList kept;
  const QStringList parts = path.split(QLatin1Char('/'));
  for (int i = rooted ? 1 : 0; i < parts.size(); ++i) {
    const QString& part = parts[i];
    const bool last = i == parts.size() - 1;
    if (part.isEmpty()) {
      // A URL inside the path keeps the "//" behind its scheme.
      if (last || (!kept.isEmpty() && kept.last().endsWith(QLatin1Char(':'))))
        kept.append(part);
    } else if (part == QLatin1String(".")) {
      if (last)
        kept.append(QString());
    } else if (part == QLatin1String("..")) {
      const bool above = kept.isEmpty() || kept.last() == part;
      if (!above)
        kept.removeLast();
      else if (!rooted)
        kept.append(part);
      if (last && (rooted || !above))
        kept.append(QString());
    } else {
      kept.append(part);
    }
  }
  QString clean = kept.join(QLatin1Char('/'));
  if (rooted)
    clean.prepend(QLatin1Char('/'));
  return clean.isEmpty() && !path.isEmpty() ? QStringLiteral("./") : clean;
}

} // namespace

void CleanupPathname(QString& path) {
  // What is left may begin like a drive or a URL, of which more has to go.
  for (int before = path.size() + 1; path.size() < before;) {
    before = path.size();
    int end = 0;
    while (end < path.size() && path[end] != QLatin1Char('?') && path[end] != QLatin1Char('#'))
      ++end;
    const int start = PathStart(path, end);
    if (!NeedsCleanup(path, start, end) &&
        !QStringView(path).left(start).contains(QLatin1Char('\\')))
      return;
    const QString root = path.left(start).replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QString dirty = path.mid(start, end - start).replace(QLatin1Char('\\'), QLatin1Char('/'));
    path = root + CleanParts(dirty) + path.mid(end);
  }
}

QString Cleaned(QString path) {
  CleanupPathname(path);
  return path;
}

} // namespace vorrel::file
