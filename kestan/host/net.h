#pragma once

#include "kestan/host/export.h"

#include <QByteArray>
#include <QString>

/// What the library needs to know about URLs. It opens no connection.
namespace vorrel::net {

/// State of a fetch as a client reports it.
enum FetchState {
  kFetchNone = 0,
  kFetchSucceeded = 2,
  kFetchCancelled = 12,
  kFetchParseFailed = 14,
};

/// Form of a file name or URL.
enum FileNameType {
  /// A relative path, or a URL of no kind that follows.
  kFileNameOther = 0,
  /// An absolute local path: "/dir/file", "C:/dir/file", "C:\dir\file".
  kFileNameLocal = 1,
  /// A local file in another notation: "file:///dir/file", "//server/share", "\\server\share".
  kFileNameLocalUrl = 2,
  /// Behind "http://" or "https://".
  kFileNameNetwork = 3,
};

KESTAN_EXPORT FileNameType GetFileNameType(const QString& name);

class KESTAN_EXPORT Fetcher {
public:
  /// True when the URL addresses a file inside a KMZ archive, with the archive's path and the path
  /// inside it: a local path or "file:" URL that goes on behind an existing file with a name that
  /// ends in ".kmz", or a network URL that goes on behind a ".kmz". Both out texts are empty
  /// otherwise. Query and fragment belong to neither; what looks like one may be part of a local
  /// name, and is where there is such a file.
  static bool FindInKmz(const QString& url, QString* kmzPath, QString* innerPath);

  /// The bytes of a file inside a local archive; null on failure, and always for network paths.
  static QByteArray GetBytesFromKmz(const QString& kmzPath, const QString& innerPath);
};

class KESTAN_EXPORT ServerInfo {
public:
  /// True for an http or https URL, in any case of letters. With `schemeOnly` the text is the
  /// scheme alone, as `QUrl::scheme` gives it.
  static bool IsHttp(const QString& url, bool schemeOnly);
};

} // namespace vorrel::net
