#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <vector>

class QIODevice;

namespace vorrel::kmz {

/// What an archive's directory tells of an entry. None of it need be true.
struct DirectoryEntry {
  QString name;
  QString otherName; ///< How the name reads in the code page, where that may be meant; else null.
  quint64 offset;    ///< Of what stands in front of the entry.
  quint64 packedSize;
  quint64 size;
  quint32 checksum;
  quint16 method;
  quint16 flags;
};

/// The directory at the end of an archive.
class Directory {
public:
  /// False when the device holds no archive; then there are no entries.
  bool Read(QIODevice& device);

  /// In the archive's order.
  const std::vector<DirectoryEntry>& GetEntries() const { return entries_; }
  /// The first entry of this name, as `PlainName` compares them; null when there's none. Searches
  /// but the first cost no walk through the entries.
  const DirectoryEntry* Find(const QString& name);
  /// The same for a name as references have it, which may be escaped where the archive's isn't.
  const DirectoryEntry* FindReference(const QString& name);
  /// "doc.kml" at the root, or else the first entry with a name that ends in ".kml"; null when
  /// there's none. What an archiver notes about files in a folder of its own is passed over.
  const DirectoryEntry* FindDocument() const;
  /// The folder of the document, with "/" behind; empty for the root.
  QString GetDocumentFolder() const;

private:
  void ReadEntries(const QByteArray& bytes, quint64 shift);
  void MakeIndex();

  std::vector<DirectoryEntry> entries_;
  QHash<QString, std::size_t> index_; ///< By the form of the name that is compared.
};

} // namespace vorrel::kmz
