#include "kestan/host/url.h"

#include "kestan/host/kmzcontents.h"
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

bool IsLibraryUrl(const QString& url) {
  return StartsWith(url, "root://") || StartsWith(url, "runtime://") ||
         StartsWith(url, "flatfile://");
}

/// Up to the last slash, but never into the server.
QString CutToDirectory(const QString& path) {
  int end = static_cast<int>(path.lastIndexOf(QLatin1Char('/')));
  if (end < 0)
    end = static_cast<int>(path.lastIndexOf(QLatin1Char('\\')));
  const bool hasServer = !IsLibraryUrl(path) && !StartsWith(path, "file:");
  const int server = hasServer ? file::GetServerEnd(path) : 0;
  if (server > 0 && end < server)
    return path.left(server) + QLatin1Char('/');
  return end < 0 ? QStringLiteral("./") : path.left(end + 1);
}

/// A relative URL behind the folder to which it is relative.
struct Joined {
  QString text;
  int start; ///< Of the URL in the text.

  Joined(const QString& folder, const QString& url) {
    const bool isDoubled = url.startsWith(QLatin1Char('/')) && !IsLibraryUrl(folder);
    text = folder + (isDoubled ? url.mid(1) : url);
    start = static_cast<int>(text.size() - url.size());
  }
};

/// Joins as if the base were a directory or an archive.
Joined JoinToPath(const QString& base, const QString& url) {
  if (base.endsWith(QLatin1String(".kml"), Qt::CaseInsensitive))
    return {CutToDirectory(base), url};
  return {base.endsWith(QLatin1Char('/')) ? base : base + QLatin1Char('/'), url};
}

/// Joins to the directory in which the document at `base` lies.
Joined JoinToDocument(const QString& base, const QString& url) {
  return {CutToDirectory(base.left(file::GetPathEnd(base, QLatin1String("?")))), url};
}

/// Joins to a local archive. Where its document lies in a folder, references begin there, and those
/// that lead to nothing begin at its root.
QString JoinToArchive(const QString& archive, const QString& url) {
  const QString root = file::Cleaned(archive) + QLatin1Char('/');
  const QString atRoot = file::Cleaned(Joined(root, url).text);
  const QString folder = kmz::GetDocumentFolder(archive);
  if (folder.isEmpty())
    return atRoot;
  const QString inFolder = file::Cleaned(Joined(root + folder, url).text);
  if (!inFolder.startsWith(root))
    return inFolder;
  QString path;
  QString inner;
  const bool exists =
      net::Fetcher::FindInKmz(inFolder, &path, &inner) && kmz::HasReference(path, inner);
  return exists ? inFolder : atRoot;
}

bool IsInside(const QString& path, const QString& directory) {
  const QString prefix = file::Cleaned(directory);
  if (prefix.isEmpty() || !path.startsWith(prefix, Qt::CaseInsensitive))
    return false;
  return prefix.endsWith(QLatin1Char('/')) || path.size() == prefix.size() ||
         path[prefix.size()] == QLatin1Char('/');
}

bool IsOwn(const QString& path) {
  return IsInside(path, System::GetInstallPath()) || IsInside(path, System::GetResourceDirectory());
}

/// A client may keep documents away from local files that aren't its own.
bool IsForbidden(const QString& url) {
  if (VersionInfo::AllowLocalFilesOutsideInstallation())
    return false;
  const QString text = url.trimmed();
  // What looks like a query may turn out to be part of a path once there is such a file.
  QString path = text;
  file::CleanupWholePathname(path);
  switch (net::GetFileNameType(text)) {
  case net::kFileNameLocal:
  case net::kFileNameLocalUrl:
    return !IsOwn(text) || !IsOwn(path);
  case net::kFileNameOther:
    return path == QLatin1String("..") || path.startsWith(QLatin1String("../"));
  default:
    return false;
  }
}

QString Resolve(const QString& base, const QString& url) {
  const UrlType type = GetRelativeUrlType(url, base);
  if (type >= kUrlNetwork)
    return file::Cleaned(url);
  if (base.isEmpty())
    return QString();
  if (type == kUrlFragment)
    return file::Cleaned(base) + url;
  const QString attempt = JoinToPath(base, url).text;
  QString kmzPath;
  QString innerPath;
  if (!net::Fetcher::FindInKmz(attempt, &kmzPath, &innerPath))
    return file::Cleaned(JoinToDocument(base, url).text);
  const bool isDocument = kmzPath == base && !net::ServerInfo::IsHttp(base, false);
  return isDocument ? JoinToArchive(base, url) : file::Cleaned(attempt);
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
  const QString absolute = Resolve(base, url);
  return IsForbidden(absolute) ? QString() : absolute;
}

int FindFragment(const QString& base, const QString& url) {
  if (url.startsWith(QLatin1Char('#')))
    return 0;
  const QLatin1String mark("#");
  int end = static_cast<int>(url.indexOf(mark));
  if (end > 0 && !base.isEmpty()) {
    const Joined joined = JoinToDocument(base, url);
    end = file::GetPathEnd(joined.text, mark, joined.start) - joined.start;
  } else if (end > 0) {
    end = file::GetPathEnd(url, mark);
  }
  return end < url.size() ? end : -1;
}

} // namespace vorrel::kestan
