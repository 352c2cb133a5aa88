#include "kestan/host/net.h"

#include "kestan/host/kmz.h"

#include <QFileInfo>
#include <QUrl>

namespace vorrel::net {

namespace {

bool IsSlash(QChar c) { return c == QLatin1Char('/') || c == QLatin1Char('\\'); }

bool BeginsWith(const QString& text, const char* start) {
  return text.startsWith(QLatin1String(start), Qt::CaseInsensitive);
}

QString WithoutQuery(const QString& url) {
  int end = 0;
  while (end < url.size() && url[end] != QLatin1Char('?') && url[end] != QLatin1Char('#'))
    ++end;
  return url.left(end);
}

} // namespace

FileNameType GetFileNameType(const QString& name) {
  if (ServerInfo::IsHttp(name, false))
    return kFileNameNetwork;
  if (BeginsWith(name, "file:"))
    return kFileNameLocalUrl;
  if (name.size() > 1 && IsSlash(name[0]) && IsSlash(name[1]))
    return kFileNameLocalUrl;
  if (name.startsWith(QLatin1Char('/')))
    return kFileNameLocal;
  const bool drive = name.size() > 2 && name[0].unicode() < 0x80 && name[0].isLetter() &&
                     name[1] == QLatin1Char(':') && IsSlash(name[2]);
  return drive ? kFileNameLocal : kFileNameOther;
}

bool Fetcher::FindInKmz(const QString& url, QString* kmzPath, QString* innerPath) {
  kmzPath->clear();
  innerPath->clear();
  constexpr int kExtension = 4;
  // Nearly no URL gets past this look at the text.
  if (!url.contains(QLatin1String(".kmz"), Qt::CaseInsensitive))
    return false;

  const bool network = ServerInfo::IsHttp(url, false);
  QString path = WithoutQuery(url);
  if (BeginsWith(path, "file:"))
    path = QUrl(path).toLocalFile();
  for (int at = path.indexOf(QLatin1String(".kmz"), 0, Qt::CaseInsensitive); at >= 0;
       at = path.indexOf(QLatin1String(".kmz"), at + 1, Qt::CaseInsensitive)) {
    const int end = at + kExtension;
    if (end + 1 >= path.size() || !IsSlash(path[end]))
      continue;
    const QString archive = path.left(end);
    if (!network && !QFileInfo(archive).isFile())
      continue;
    *kmzPath = archive;
    *innerPath = path.mid(end + 1);
    return true;
  }
  return false;
}

QByteArray Fetcher::GetBytesFromKmz(const QString& kmzPath, const QString& innerPath) {
  if (ServerInfo::IsHttp(kmzPath, false))
    return QByteArray();
  const QByteArray bytes = kmz::UnzipFile(kmzPath, innerPath);
  if (!bytes.isNull())
    return bytes;
  // References are often escaped where the names in the archive aren't.
  const QString decoded = QUrl::fromPercentEncoding(innerPath.toUtf8());
  return decoded != innerPath ? kmz::UnzipFile(kmzPath, decoded) : QByteArray();
}

bool ServerInfo::IsHttp(const QString& url, bool schemeOnly) {
  if (schemeOnly)
    return url.compare(QLatin1String("http"), Qt::CaseInsensitive) == 0 ||
           url.compare(QLatin1String("https"), Qt::CaseInsensitive) == 0;
  return BeginsWith(url, "http://") || BeginsWith(url, "https://");
}

} // namespace vorrel::net
