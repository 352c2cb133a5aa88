#pragma once

#include "kestan/host/export.h"

#include <QString>

namespace vorrel::kestan {

/// What a URL text is, by its form.
enum UrlType {
  kUrlRelative = 0, ///< A relative path.
  kUrlFragment = 1, ///< A fragment of the same document.
  kUrlNetwork = 2,  ///< Fetched from a server.
  kUrlLocal = 3,    ///< A local path, or an absolute form of any other scheme.
  kUrlRuntime = 4,  ///< An id that was made at run time.
  kUrlFlatfile = 5, ///< A resource of the client's flat-file store.
  kUrlRoot = 6,     ///< A built-in resource; also the empty text.
};

KESTAN_EXPORT UrlType GGetUrlType(const QString& url);

/// False for a relative path, a fragment and the empty text.
KESTAN_EXPORT bool GIsUrlAbsolute(const QString& url);

/// The type of a URL that stands in a document at `base`: a path that begins with one slash is
/// relative to a base that isn't local.
KESTAN_EXPORT UrlType GetRelativeUrlType(const QString& url, const QString& base);

/// The absolute form of a URL that stands in a document at `base`. A document that lies in a folder
/// of its local archive refers to files in that folder, and then to those at the archive's root;
/// URLs of archives from elsewhere begin at the root, since they aren't here to be asked. Empty for
/// a relative one without a base, and for a local file that documents may not name.
KESTAN_EXPORT QString ResolveUrl(const QString& base, const QString& url);

/// Where the "#" stands that begins the fragment of such a URL; -1 when there is none. With an
/// empty base the URL is absolute.
KESTAN_EXPORT int FindFragment(const QString& base, const QString& url);

} // namespace vorrel::kestan
