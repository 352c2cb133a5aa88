#pragma once

#include "kestan/host/kmzwriter.h"
#include "kestan/write/freenames.h"
#include "kestan/write/sourcefiles.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace vorrel::kestan {

/// A file that travels with a document in its archive.
struct KmzDictionaryEntry {
  SourceFile source; ///< Where its bytes are.
  QString fileName;  ///< Unique within the directory.
  QString directory; ///< What stands in front of the name, with "/" behind.
};

/// The files that a document takes along into an archive. They are named while the document is
/// written, and read only when they are packed.
///
/// Files come in the order in which they were named. A file counts once, under however many URLs.
class KmzFiles {
public:
  /// For the archive at `destination`: no document takes in what it's being written to.
  explicit KmzFiles(const QString& destination) : destination_(destination) {}

  /// From now on only files at or below the folder of the document at `url`, or of its archive, are
  /// taken along; without a local document, none.
  void SetHome(const QString& url);

  /// The reference to the copy of a local file; a null text when there's no such file to read.
  QString Register(const QString& url);
  /// Adds them all, behind what is in the archive. Answers the failure text, empty when all went
  /// well. What can't be read is left out.
  QString Pack(kmz::Writer& archive);

  /// The local files that were asked for and couldn't be read, in that order.
  const QStringList& GetUnreadable() const { return unreadable_; }
  /// Those that lie outside of the document's home, likewise.
  const QStringList& GetOutside() const { return outside_; }

private:
  int Add(const QString& url);
  bool IsAtHome(const SourceFile& source) const;
  kmz::Writer::Result Copy(const KmzDictionaryEntry& entry, kmz::Writer& archive);
  QString CreateUniqueKmzDataFileName(const QString& fileName);

  QString destination_;
  std::vector<KmzDictionaryEntry> entries_;
  QHash<QString, int> entriesByUrl_;  ///< -1 for what isn't taken along.
  QHash<QString, int> entriesByFile_; ///< By what the file is, whatever it's called.
  QSet<QString> names_;               ///< Without their case.
  FreeNames freeNames_;
  SourceFiles sources_;
  QStringList unreadable_;
  QStringList outside_;
  std::optional<QString> home_; ///< An archive, or a folder with "/" behind.
};

} // namespace vorrel::kestan
