#pragma once

#include "kestan/host/export.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

class QIODevice;

namespace vorrel::kmz {

struct DirectoryEntry;
struct Limits;
class Directory;

/// A KMZ archive that is open for reading, standing at one of its entries: for several reads of one
/// archive. A single read is simpler with `UnzipFile` and its kin.
///
/// Names are compared as these do. Thread: any, one at a time.
class KESTAN_EXPORT Archive {
public:
  /// `device` is open, and stays so as long as the archive is in use.
  explicit Archive(QIODevice& device);
  ~Archive();
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  /// False when the device holds no archive; then there are no entries.
  bool IsOpen() const { return directory_ != nullptr; }

  /// The names of all entries, folders too, in the archive's order.
  QStringList GetNames() const;
  /// The folder of the archive in which its document lies, with "/" behind; empty for the root.
  QString GetDocumentFolder() const;

  /// Goes to the first entry of this name, or to the document for a null name. False when there's
  /// none. Later searches for names cost no further walk through the archive.
  bool Find(const QString& entry);
  /// The same for a name as references have it, which may be escaped where the archive's isn't.
  bool FindReference(const QString& entry);

  /// True for an entry that may be unpacked within these limits; else `reason` tells the user why
  /// not. Whether its bytes are sound shows when they are read.
  bool IsReadable(const Limits& limits, QString& reason) const;
  /// Unpacks the present entry. Null, and a reason, on failure; an empty entry is not null.
  QByteArray Read(const Limits& limits, QString& reason);

private:
  QIODevice& device_;
  std::unique_ptr<Directory> directory_;
  const DirectoryEntry* entry_ = nullptr; ///< The present one.
};

} // namespace vorrel::kmz
