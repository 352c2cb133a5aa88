#pragma once

#include <QString>

/// What references ask about local archives. Each thread remembers the archive that it asked about
/// last, as long as that stays as it was.
namespace vorrel::kmz {

/// The folder in which the archive's document lies, with "/" behind; empty for the root.
QString GetDocumentFolder(const QString& path);
/// True when the archive has a file of this name, be it escaped.
bool HasReference(const QString& path, const QString& name);

} // namespace vorrel::kmz
