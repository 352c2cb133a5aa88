#include "kestan/link/url.h"

#include "kestan/host/net.h"

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

} // namespace vorrel::kestan
