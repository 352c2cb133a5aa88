#pragma once

#include "kestan/host/export.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>

/// KMZ archives: reading here, several reads of one archive in `kmzarchive.h`, writing in
/// `kmzwriter.h`. Nothing is ever unpacked into a file.
///
/// Entry names are compared without regard to case, with "/" for backslashes and without "/" or
/// "./" in front, and composed letters count as decomposed ones do, since archives in the wild have
/// all of these. All operations are safe from any thread.
namespace vorrel::kmz {

/// What an entry may unpack to, as a guard against archives made to fill the memory.
struct Limits {
  /// The largest entry, in bytes.
  qint64 maxEntrySize = qint64(1) << 30;
  /// How many times larger than its packed form an entry may be. KML packs to a tenth, repetitive
  /// KML to a hundredth; deflate ends at a thousandth.
  qint64 maxRatio = 300;
  /// Up to this size any ratio is fine.
  qint64 freeSize = qint64(64) << 20;
};

KESTAN_EXPORT Limits GetLimits();
/// For the whole process; counts for the operations that begin afterwards.
KESTAN_EXPORT void SetLimits(const Limits& limits);

/// True when the bytes begin as an archive does.
KESTAN_EXPORT bool IsKmzData(const void* data, std::size_t size);
/// True when the file does. `exists`, which may be null, tells whether there is such a file.
KESTAN_EXPORT bool IsKmzFile(const QString& path, bool* exists = nullptr);

/// The bytes of an entry. A null `entry` asks for the document: "doc.kml" at the root, or else the
/// first entry with a name that ends in ".kml" outside the folder "__MACOSX". A name that isn't
/// there is looked for in the document's folder, where its references begin.
///
/// On failure the result is null and `error`, when given, gets a text for the user: no archive, no
/// such entry, one that is damaged, encrypted or packed by another method than deflation, or one
/// beyond the limits. The bytes of an empty entry
/// are empty, not null.
KESTAN_EXPORT QByteArray UnzipBytes(const QByteArray& bytes, const QString& entry,
                                    QString* error = nullptr);
KESTAN_EXPORT QByteArray UnzipFile(const QString& path, const QString& entry,
                                   QString* error = nullptr);

/// The names of all files in an archive as they stand there, in its order.
KESTAN_EXPORT QStringList ListEntries(const QByteArray& bytes);
KESTAN_EXPORT QStringList ListFileEntries(const QString& path);

} // namespace vorrel::kmz
