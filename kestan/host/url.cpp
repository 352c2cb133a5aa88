#include "kestan/host/url.h"

#include "kestan/host/net.h"
#include "kestan/host/path.h"
#include "kestan/host/system.h"
#include "kestan/host/versioninfo.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

bool StartsWith(const QString& url, const char* prefix) {
  return url.startsWith(QLatin1String(prefix), Qt::CaseInsensitive);
}

bool HasFlatfileQuery(const QString& url) { return url.indexOf(QLatin1String("/flatfile?")) > 0; }

/// A drive letter, a rooted path or a network share.
bool IsLocalPath(const QString& url) {
  const bool isDrive = url.size() > 2 && url[1] == QLatin1Char(':') &&
                       (url[2] == QLatin1Char('/') || url[2] == QLatin1Char('\\'));
  return isDrive || url[0] == QLatin1Char('/') || url.startsWith(QLatin1String("\\\\")) ||
         url.startsWith(QLatin1String(":/"));
}

bool IsAsciiLetter(QChar c) {
  const ushort lower = c.unicode() | 0x20U;
  return lower >= 'a' && lower <= 'z';
}

bool IsSchemeChar(QChar c) {
  return IsAsciiLetter(c) || (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
         c == QLatin1Char('+') || c == QLatin1Char('-') || c == QLatin1Char('.');
}

/// True for a text that begins with a scheme and a colon, behind any white space.
bool HasScheme(const QString& url) {
  const auto start = std::find_if_not(url.begin(), url.end(), [](QChar c) { return c.isSpace(); });
  if (start == url.end() || !IsAsciiLetter(*start))
    return false;
  const auto end = std::find_if_not(start, url.end(), IsSchemeChar);
  return end != url.end() && *end == QLatin1Char(':');
}

/// Up to the last slash.
QString CutToDirectory(const QString& path) {
  int end = static_cast<int>(path.lastIndexOf(QLatin1Char('/')));
  if (end < 0)
    end = static_cast<int>(path.lastIndexOf(QLatin1Char('\\')));
  return end < 0 ? QStringLiteral("./") : path.left(end + 1);
}

/// Joins as if the base were a directory or an archive.
QString JoinToPath(const QString& base, const QString& url) {
  if (base.endsWith(QLatin1String(".kml"), Qt::CaseInsensitive))
    return CutToDirectory(base) + url;
  return base.endsWith(QLatin1Char('/')) ? base + url : base + QLatin1Char('/') + url;
}

/// Joins to the directory in which the document at `base` lies.
QString JoinToDocument(const QString& base, const QString& url) {
  return CutToDirectory(base.section(QLatin1Char('?'), 0, 0)) + url;
}

bool IsInside(const QString& path, const QString& directory) {
  const QString prefix = file::Cleaned(directory);
  if (prefix.isEmpty() || !path.startsWith(prefix, Qt::CaseInsensitive))
    return false;
  return prefix.endsWith(QLatin1Char('/')) || path.size() == prefix.size() ||
         path[prefix.size()] == QLatin1Char('/');
}

/// A client may keep documents away from local files that aren't its own.
bool IsForbidden(const QString& url) {
  if (VersionInfo::AllowLocalFilesOutsideInstallation())
    return false;
  const net::FileNameType type = net::GetFileNameType(url);
  return (type == net::kFileNameLocal || type == net::kFileNameLocalUrl) &&
         !IsInside(url, System::GetInstallPath()) && !IsInside(url, System::GetResourceDirectory());
}

QString Join(const QString& base, const QString& url) {
  const UrlType type = GetRelativeUrlType(url, base);
  if (type >= kUrlNetwork)
    return url;
  if (base.isEmpty())
    return QString();
  const bool isFragment = type == kUrlFragment;
  const QString attempt = isFragment ? base : JoinToPath(base, url);
  QString kmzPath;
  QString innerPath;
  if (net::Fetcher::FindInKmz(attempt, &kmzPath, &innerPath) ||
      (kmzPath != base && !innerPath.isEmpty()))
    return isFragment ? attempt + url : attempt;
  return isFragment ? base + url : JoinToDocument(base, url);
}

} // namespace

UrlType GGetUrlType(const QString& url) {
  if (url.isEmpty())
    return kUrlRoot;
  if (url[0] == QLatin1Char('#'))
    return kUrlFragment;
  if (StartsWith(url, "http://") || StartsWith(url, "https://"))
    return HasFlatfileQuery(url) ? kUrlFlatfile : kUrlNetwork;
  if (IsLocalPath(url))
    return kUrlLocal;
  if (StartsWith(url, "root://"))
    return kUrlRoot;
  if (StartsWith(url, "runtime://"))
    return kUrlRuntime;
  if (url.startsWith(QLatin1String("flatfile://")) || HasFlatfileQuery(url))
    return kUrlFlatfile;
  return HasScheme(url) ? kUrlLocal : kUrlRelative;
}

bool GIsUrlAbsolute(const QString& url) {
  return !url.isEmpty() && GGetUrlType(url) >= kUrlNetwork;
}

UrlType GetRelativeUrlType(const QString& url, const QString& base) {
  const UrlType type = GGetUrlType(url);
  const bool isRooted = type == kUrlLocal && url.size() > 1 && url[0] == QLatin1Char('/') &&
                        url[1] != QLatin1Char('/');
  if (base.isEmpty() || !isRooted)
    return type;
  const net::FileNameType baseType = net::GetFileNameType(base);
  const bool isLocalBase = baseType == net::kFileNameLocal || baseType == net::kFileNameLocalUrl;
  return isLocalBase ? kUrlLocal : kUrlRelative;
}

QString ResolveUrl(const QString& base, const QString& url) {
  const QString absolute = file::Cleaned(Join(base, url));
  return IsForbidden(absolute) ? QString() : absolute;
}

} // namespace vorrel::kestan
