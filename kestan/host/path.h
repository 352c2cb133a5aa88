#pragma once

#include "kestan/host/export.h"

#include <QString>

/// The text of paths and URLs.
namespace vorrel::file {

/// Brings a path or URL into its plain form: "/" for backslashes, and no ".", ".." or doubled "/"
/// among the parts of its path.
///
/// What isn't path stays as it is: scheme and server of a URL, query and fragment, a drive, the
/// server of "//server/share", and a URL of which the scheme has no "//", such as "data:". A ".."
/// that leads above the root is dropped, one above the start of a relative path is kept.
KESTAN_EXPORT void CleanupPathname(QString& path);
/// The plain form of a path or URL.
KESTAN_EXPORT QString Cleaned(QString path);

} // namespace vorrel::file
