#pragma once

#include "kestan/host/export.h"

#include <QLatin1String>
#include <QString>

/// The text of paths and URLs.
namespace vorrel::file {

/// Brings a path or URL into its plain form: "/" for backslashes, and no ".", ".." or doubled "/"
/// among the parts of its path. To a server of the web doubled "/" may mean something: they stay.
///
/// What isn't path stays as it is: scheme and server of a URL, query and fragment, a drive, the
/// server of "//server/share", and a URL of which the scheme has no "//", such as "data:". A ".."
/// that leads above the root is dropped, one above the start of a relative path is kept.
KESTAN_EXPORT void CleanupPathname(QString& path);
/// The same for a text that is path from end to end, whatever it holds.
KESTAN_EXPORT void CleanupWholePathname(QString& path);
/// The plain form of a path or URL.
KESTAN_EXPORT QString Cleaned(QString path);

KESTAN_EXPORT bool IsSlash(QChar c);

/// Where the server of a URL ends, as in "http://server/path"; 0 for a text without one.
KESTAN_EXPORT int GetServerEnd(const QString& url);

/// Where the path of a URL or local path ends, and its query or fragment begins: at the first of
/// `marks` from `from` on. Files may have these in their names, and such a name is told from a
/// query by there being a file or folder of that name.
KESTAN_EXPORT int GetPathEnd(const QString& url, QLatin1String marks = QLatin1String("?#"),
                             int from = 0);

/// The path that `text` stands for, escaped from `from` on, as references often are. Null for one
/// that only unescaping leads upwards: it isn't what the rules of documents allowed.
KESTAN_EXPORT QString Unescaped(const QString& text, int from = 0);
/// The same for a local path, of which those parts are escaped that aren't there as they stand.
KESTAN_EXPORT QString UnescapedLocal(const QString& path);

} // namespace vorrel::file
