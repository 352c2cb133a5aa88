#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QFile;

namespace vorrel::kestan {

/// Where a URL leads on this machine.
struct SourceFile {
  QString path;      ///< Of the local file.
  QString innerPath; ///< Within that file when it is an archive; null for the file itself.
};

/// The local files that a document's URLs lead to, also inside archives.
class SourceFiles {
public:
  SourceFiles();
  ~SourceFiles();

  /// False when there's no such file, or it can't be read.
  bool Locate(const QString& url, SourceFile& source);
  /// Opens a file outside archives for reading in large pieces. False when it can't be read.
  static bool Open(QFile& file);
  /// The bytes of a file inside an archive; null when it's damaged.
  QByteArray ReadFromArchive(const SourceFile& source);

private:
  struct OpenArchive;

  OpenArchive& GetArchive(const QString& path);

  std::unique_ptr<OpenArchive>
      archive_; ///< The one that was used last, nearly always the only one.
};

} // namespace vorrel::kestan
