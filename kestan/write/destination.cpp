#include "kestan/write/destination.h"

#include "kestan/host/file.h"
#include "kestan/host/kmzwriter.h"
#include "kestan/host/path.h"
#include "kestan/host/tr.h"
#include "kestan/write/outputurls.h"
#include "kestan/write/utf8ostream.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

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

/// True for a pipe, a terminal, a device: what can't be replaced by another file, and what opening
/// may already change.
bool IsSpecialFile(const QString& path) {
  const QFileInfo info(path);
  // The names of open files, such as "/dev/stdout", lead to the place of the file that is meant.
  return (info.exists() && !info.isFile() && !info.isDir()) ||
         path.startsWith(QLatin1String("/dev/")) || path.startsWith(QLatin1String("/proc/"));
}

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
  if (suffix.isEmpty() && !IsSpecialFile(fileName))
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
  QSaveFile file(fileName_);
  file.setDirectWriteFallback(true);
  if (!file.open(QIODevice::WriteOnly))
    return OpenFault();
  return WriteAll(file, text) && file.commit() ? QString() : WriteFault();
}

QString Destination::WriteArchive(const Utf8OStream& text, OutputUrls& urls) {
  // The archive is complete and on the disk before it takes the place of the old one.
  QSaveFile file(fileName_);
  if (!file.open(QIODevice::WriteOnly))
    return RemoveFault(); // the folder takes no new file, so that the old one can't go
  kmz::Writer archive(file);
  archive.Add(QStringLiteral("doc.kml"), text.data(), static_cast<qint64>(text.size()));
  const QString error = urls.Pack(archive);
  if (!error.isEmpty())
    return error;
  if (!archive.Close() || !file::sync(file))
    return WriteFault();
  return file.commit() ? QString() : RenameFault();
}

} // namespace vorrel::kestan
