#include "kestan/host/path.h"

#include <QFileInfo>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace vorrel::file {

bool IsSlash(QChar c) { return c == QLatin1Char('/') || c == QLatin1Char('\\'); }

namespace {

constexpr QLatin1String kMarks("?#", 2);

int SizeOf(const QString& text) { return static_cast<int>(text.size()); }

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

int IndexOfMark(const QString& text, QLatin1String marks, int from) {
  const auto isMark = [marks](QChar c) {
    return std::any_of(marks.begin(), marks.end(),
                       [c](char mark) { return c == QLatin1Char(mark); });
  };
  return static_cast<int>(std::find_if(text.begin() + from, text.end(), isMark) - text.begin());
}

bool HasServer(const QString& text, int scheme, int end) {
  return scheme > 0 && scheme + 2 < end && IsSlash(text[scheme + 1]) && IsSlash(text[scheme + 2]);
}

bool IsOnTheWeb(const QString& text) {
  return text.startsWith(QLatin1String("http:"), Qt::CaseInsensitive) ||
         text.startsWith(QLatin1String("https:"), Qt::CaseInsensitive);
}

/// Where the path begins that may be rewritten; the text's end when there is none.
int PathStart(const QString& text, int end) {
  const int scheme = SchemeLength(text);
  if (scheme > 0)
    return HasServer(text, scheme, end) ? IndexOfSlash(text, scheme + 3, end) : end;
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
bool NeedsCleanup(const QString& text, int start, int end, bool keepsEmpty) {
  for (int i = start; i < end; ++i) {
    if (text[i] == QLatin1Char('\\'))
      return true;
    const bool begins = i == start || text[i - 1] == QLatin1Char('/');
    const bool isEmpty = !keepsEmpty && i > start && text[i] == QLatin1Char('/');
    if (begins && (text[i] == QLatin1Char('.') || isEmpty))
      return true;
  }
  return false;
}

QString CleanParts(const QString& path, bool keepsEmpty) {
  const bool rooted = path.startsWith(QLatin1Char('/'));
  QStringList kept;
  const QStringList parts = path.split(QLatin1Char('/'));
  for (int i = rooted ? 1 : 0; i < parts.size(); ++i) {
    const QString& part = parts[i];
    const bool last = i == parts.size() - 1;
    if (part.isEmpty()) {
      // A URL inside the path keeps the "//" behind its scheme.
      if (last || keepsEmpty || (!kept.isEmpty() && kept.last().endsWith(QLatin1Char(':'))))
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

/// Leaves as many characters as they are at the end.
void Cleanup(QString& path, int behind) {
  // What is left may begin like a drive or a URL, of which more has to go.
  for (auto before = path.size() + 1; path.size() < before;) {
    before = path.size();
    const int end = SizeOf(path) - behind;
    const int start = PathStart(path, end);
    const bool keepsEmpty = IsOnTheWeb(path);
    if (!NeedsCleanup(path, start, end, keepsEmpty) &&
        !QStringView(path).left(start).contains(QLatin1Char('\\')))
      return;
    const QString root = path.left(start).replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QString dirty = path.mid(start, end - start).replace(QLatin1Char('\\'), QLatin1Char('/'));
    path = root + CleanParts(dirty, keepsEmpty) + path.mid(end);
  }
}

} // namespace

int GetServerEnd(const QString& url) {
  const int scheme = SchemeLength(url);
  const int end = IndexOfMark(url, kMarks, 0);
  return HasServer(url, scheme, end) ? IndexOfSlash(url, scheme + 3, end) : 0;
}

int GetPathEnd(const QString& url, QLatin1String marks, int from) {
  int end = IndexOfMark(url, marks, from);
  if (SchemeLength(url) > 0)
    return end;
  while (end < url.size()) {
    const int partEnd = IndexOfSlash(url, end, SizeOf(url));
    QString part = url.left(partEnd);
    CleanupWholePathname(part); // is what it is asked for in the end
    if (!QFileInfo::exists(part))
      break;
    end = IndexOfMark(url, marks, partEnd);
  }
  return end;
}

void CleanupPathname(QString& path) {
  int end = IndexOfMark(path, kMarks, 0);
  // Nearly no path is asked whether it exists: only where that makes a difference.
  if (end < path.size() && NeedsCleanup(path, 0, SizeOf(path), false))
    end = GetPathEnd(path);
  Cleanup(path, SizeOf(path) - end);
}

void CleanupWholePathname(QString& path) { Cleanup(path, 0); }

QString Cleaned(QString path) {
  CleanupPathname(path);
  return path;
}

QString Unescaped(const QString& text, int from) {
  const QString path = text.left(from) + QUrl::fromPercentEncoding(text.mid(from).toUtf8());
  return Cleaned(path) == path && !path.contains(QChar(QChar::Null)) ? path : QString();
}

QString UnescapedLocal(const QString& path) {
  return Unescaped(path, GetPathEnd(path, QLatin1String("%")));
}

} // namespace vorrel::file
