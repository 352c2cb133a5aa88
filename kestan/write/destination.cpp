#include "kestan/write/destination.h"

#include "kestan/host/file.h"
#include "kestan/host/kmzwriter.h"
#include "kestan/host/path.h"
#include "kestan/host/tr.h"
#include "kestan/host/utf8ostream.h"
#include "kestan/write/outputurls.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

#include <algorithm>
#include <cstdio>

namespace vorrel::kestan {

namespace {

QString OpenFault() {
  return tr("Could not open file for writing.", "Unable to open a KML or KMZ file path");
}

QString WriteFault() {
  return tr("Could not write file.", "Unable to write the contents of a KML or KMZ file");
}

QString RemoveFault() { return tr("Could not remove file.", "Unable to delete a KML or KMZ file"); }

QString RenameFault() { return tr("Could not rename file.", "Unable to rename a KML or KMZ file"); }

/// True for the name of an open file. It leads to the place of the file that is meant, but what is
/// written has to go where that file is at.
bool IsOpenFile(const QString& path) {
  static const QLatin1String kStreams[] = {
      QLatin1String("/dev/stdin"), QLatin1String("/dev/stdout"), QLatin1String("/dev/stderr")};
  return std::find(std::begin(kStreams), std::end(kStreams), path) != std::end(kStreams) ||
         path.startsWith(QLatin1String("/dev/fd/")) || path.startsWith(QLatin1String("/proc/"));
}

/// True for a pipe, a terminal, a device: what can't be replaced by another file, and what opening
/// may already change.
bool IsSpecialFile(const QString& path) {
  const QFileInfo info(path);
  return (info.exists() && !info.isFile() && !info.isDir()) || IsOpenFile(path);
}

bool IsFolder(const QString& path) {
  return path.endsWith(QLatin1Char('/')) || QFileInfo(path).isDir();
}

/// What takes the place of a file once it's complete.
///
/// It's written beside the file, under its name with some more characters. A name without room for
/// those is replaced by way of another one.
class Replacement {
public:
  explicit Replacement(const QString& path) : path_(path) {
    constexpr int kMostBytes = 240;
    const QFileInfo info(QFileInfo(path).canonicalFilePath());
    if (QFile::encodeName(info.fileName()).size() > kMostBytes) {
      path_ = info.filePath();
      shorter_.setFileTemplate(info.path() + QLatin1String("/~QZXXXXXX"));
      if (shorter_.open())
        shorter_.setPermissions(info.permissions());
    }
    const bool isShorter = !shorter_.fileName().isEmpty();
    file_.setFileName(isShorter ? shorter_.fileName() : path);
  }

  QSaveFile& file() { return file_; }
  bool Commit() {
    if (!file_.commit())
      return false;
    return shorter_.fileName().isEmpty() ||
           std::rename(QFile::encodeName(shorter_.fileName()).constData(),
                       QFile::encodeName(path_).constData()) == 0;
  }

private:
  QString path_;
  QTemporaryFile shorter_; ///< Without a name where it isn't needed.
  QSaveFile file_;
};

bool WriteAll(QFileDevice& file, const Utf8OStream& text) {
  const qint64 size = static_cast<qint64>(text.size());
  return file.write(text.data(), size) == size && file.flush();
}

} // namespace

Destination::Destination(const QString& fileName, QString& error)
    : mode_(WriteState::kWriteKmlFile), fileName_(fileName) {
  if (fileName.isEmpty()) {
    error = tr("Empty filename for writing kml");
    return;
  }
  const QString suffix = QFileInfo(fileName).suffix().toLower();
  if (suffix == QLatin1String("kmz"))
    mode_ = WriteState::kWriteKmzFile;
  if (suffix.isEmpty() && !IsSpecialFile(fileName) && !IsFolder(fileName))
    fileName_ += QLatin1String(".kml");
  error = Try();

  folder_ = QFileInfo(fileName_).absolutePath();
  file::CleanupWholePathname(folder_);
  if (!folder_.endsWith(QLatin1Char('/')))
    folder_ += QLatin1Char('/');
}

QString Destination::Try() {
  // An archive isn't written from its start to its end.
  if (IsSpecialFile(fileName_))
    return mode_ == WriteState::kWriteKmzFile ? OpenFault()
                                              : QString(); // the rest is told when it's written
  const bool existed = QFileInfo::exists(fileName_);
  QFile file(fileName_);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
    return OpenFault();
  created_ = !existed;
  return QString();
}

QString Destination::Write(Utf8OStream& text, OutputUrls& urls) {
  switch (mode_) {
  case WriteState::kWriteKmlFile:
    return WriteFile(text);
  case WriteState::kWriteKmzFile:
    return WriteArchive(text, urls);
  case WriteState::kWriteByteArray:
    break;
  }
  return WriteBytes(text);
}

void Destination::Discard() {
  if (created_)
    QFile::remove(fileName_);
}

QString Destination::WriteBytes(Utf8OStream& text) {
  if (text.size() > Utf8OStream::kMaxArraySize)
    return tr("The document is too large for a byte array.", "A KML text is beyond 2 GiB");
  *bytes_ = text.TakeBytes();
  return QString();
}

QString Destination::WriteFile(const Utf8OStream& text) {
  if (IsSpecialFile(fileName_)) {
    QFile file(fileName_);
    if (!file.open(QIODevice::WriteOnly))
      return OpenFault();
    return WriteAll(file, text) ? QString() : WriteFault();
  }
  // Only where the folder takes no further file are the old contents overwritten in place.
  Replacement replacement(fileName_);
  QSaveFile& file = replacement.file();
  file.setDirectWriteFallback(true);
  if (!file.open(QIODevice::WriteOnly))
    return OpenFault();
  return WriteAll(file, text) && replacement.Commit() ? QString() : WriteFault();
}

QString Destination::WriteArchive(const Utf8OStream& text, OutputUrls& urls) {
  // The archive is complete and on the disk before it takes the place of the old one.
  Replacement replacement(fileName_);
  QSaveFile& file = replacement.file();
  if (!file.open(QIODevice::WriteOnly))
    return RemoveFault(); // the folder takes no new file, so that the old one can't go
  kmz::Writer archive(file);
  archive.Add(QStringLiteral("doc.kml"), text.data(), static_cast<qint64>(text.size()));
  const QString error = urls.Pack(archive);
  if (!error.isEmpty())
    return error;
  if (!archive.Close() || !file::sync(file))
    return WriteFault();
  return replacement.Commit() ? QString() : RenameFault();
}

} // namespace vorrel::kestan
