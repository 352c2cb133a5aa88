#include "kestan/host/net.h"

#include "kestan/host/kmz.h"
#include "kestan/host/kmzarchive.h"
#include "kestan/host/kmzcontents.h"
#include "kestan/host/path.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <climits>

namespace vorrel::net {

namespace {

bool BeginsWith(const QString& text, const char* start) {
  return text.startsWith(QLatin1String(start), Qt::CaseInsensitive);
}

/// Where the name of a file in a local archive ends, and its query or fragment begins.
int GetInnerEnd(const QString& archive, const QString& inner) {
  const auto isMark = [](QChar c) { return c == QLatin1Char('?') || c == QLatin1Char('#'); };
  const auto first = std::find_if(inner.begin(), inner.end(), isMark);
  if (first == inner.end() || kmz::HasReference(archive, inner))
    return static_cast<int>(inner.size());
  const int last =
      static_cast<int>(std::find_if(inner.rbegin(), inner.rend(), isMark).base() - inner.begin()) -
      1;
  return kmz::HasReference(archive, inner.left(last)) ? last
                                                      : static_cast<int>(first - inner.begin());
}

/// Splits a path behind the first part of it that names an archive; a local one must be there.
bool Split(const QString& path, bool isLocal, QString* kmzPath, QString* innerPath) {
  const QLatin1String extension(".kmz");
  for (auto at = path.indexOf(extension, 0, Qt::CaseInsensitive); at >= 0;
       at = path.indexOf(extension, at + 1, Qt::CaseInsensitive)) {
    const int end = static_cast<int>(at + extension.size());
    if (isLocal && end > PATH_MAX)
      return false; // and there may be any number of others
    if (end + 1 >= path.size() || !file::IsSlash(path[end]))
      continue;
    if (isLocal && !QFileInfo(path.left(end)).isFile())
      continue;
    *kmzPath = path.left(end);
    *innerPath = path.mid(end + 1);
    return true;
  }
  return false;
}

} // namespace

FileNameType GetFileNameType(const QString& name) {
  if (ServerInfo::IsHttp(name, false))
    return kFileNameNetwork;
  if (BeginsWith(name, "file:"))
    return kFileNameLocalUrl;
  if (name.size() > 1 && file::IsSlash(name[0]) && file::IsSlash(name[1]))
    return kFileNameLocalUrl;
  if (name.startsWith(QLatin1Char('/')))
    return kFileNameLocal;
  const bool drive = name.size() > 2 && name[0].unicode() < 0x80 && name[0].isLetter() &&
                     name[1] == QLatin1Char(':') && file::IsSlash(name[2]);
  return drive ? kFileNameLocal : kFileNameOther;
}

bool Fetcher::FindInKmz(const QString& url, QString* kmzPath, QString* innerPath) {
  kmzPath->clear();
  innerPath->clear();
  // Nearly no URL gets past this look at the text.
  if (!url.contains(QLatin1String(".kmz"), Qt::CaseInsensitive))
    return false;
  if (ServerInfo::IsHttp(url, false))
    return Split(url.left(file::GetPathEnd(url)), false, kmzPath, innerPath);
  if (BeginsWith(url, "file:"))
    return Split(QUrl(url).toLocalFile(), true, kmzPath, innerPath);
  const bool mayBeEscaped = url.contains(QLatin1Char('%'));
  if (!Split(url, true, kmzPath, innerPath) &&
      !(mayBeEscaped && Split(file::UnescapedLocal(url), true, kmzPath, innerPath)))
    return false;
  innerPath->truncate(GetInnerEnd(*kmzPath, *innerPath));
  if (!innerPath->isEmpty())
    return true;
  kmzPath->clear();
  return false;
}

QByteArray Fetcher::GetBytesFromKmz(const QString& kmzPath, const QString& innerPath) {
  if (ServerInfo::IsHttp(kmzPath, false))
    return QByteArray();
  QFile file(kmzPath);
  file.open(QIODevice::ReadOnly);
  kmz::Archive archive(file);
  QString reason;
  return archive.FindReference(innerPath) ? archive.Read(kmz::GetLimits(), reason) : QByteArray();
}

bool ServerInfo::IsHttp(const QString& url, bool schemeOnly) {
  if (schemeOnly)
    return url.compare(QLatin1String("http"), Qt::CaseInsensitive) == 0 ||
           url.compare(QLatin1String("https"), Qt::CaseInsensitive) == 0;
  return BeginsWith(url, "http://") || BeginsWith(url, "https://");
}

} // namespace vorrel::net
