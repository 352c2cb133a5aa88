#include "kestan/host/kmz.h"

#include "kestan/host/kmzarchive.h"
#include "kestan/host/spinlock.h"
#include "kestan/host/tr.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <cstring>
#include <mutex>

namespace vorrel::kmz {

namespace {

SpinLock s_lock;
Limits s_limits;

QByteArray Unzip(QIODevice& device, const QString& archiveName, const QString& entry,
                 QString* error) {
  QString reason;
  QByteArray bytes;
  if (Archive archive(device); !archive.IsOpen())
    reason = tr("it is no archive", "Reason why an entry of a KMZ file can't be read");
  else if (!archive.Find(entry) && !archive.Find(archive.GetDocumentFolder() + entry))
    reason = tr("there is no such file in the archive",
                "Reason why an entry of a KMZ file can't be read");
  else
    bytes = archive.Read(GetLimits(), reason);
  if (error)
    *error = reason.isEmpty() ? QString()
                              : tr("Could not unpack \"%1\" from kmz file \"%2\": %3",
                                   "File in the archive, the archive, and the reason")
                                    .arg(entry.isNull() ? QStringLiteral("doc.kml") : entry,
                                         archiveName, reason);
  return bytes;
}

QStringList List(QIODevice& device) {
  QStringList names;
  for (const QString& name : Archive(device).GetNames()) {
    if (!name.endsWith(QLatin1Char('/')) && !name.endsWith(QLatin1Char('\\')))
      names.append(name);
  }
  return names;
}

} // namespace

Limits GetLimits() {
  const std::lock_guard<SpinLock> guard(s_lock);
  return s_limits;
}

void SetLimits(const Limits& limits) {
  const std::lock_guard<SpinLock> guard(s_lock);
  s_limits = limits;
}

bool IsKmzData(const void* data, std::size_t size) {
  // The first entry, or the directory of an archive without any.
  return size >= 4 && (std::memcmp(data, "PK\3\4", 4) == 0 || std::memcmp(data, "PK\5\6", 4) == 0);
}

bool IsKmzFile(const QString& path, bool* exists) {
  const bool isFile = QFileInfo(path).isFile();
  if (exists)
    *exists = isFile;
  QFile file(path);
  if (!isFile || !file.open(QIODevice::ReadOnly))
    return false;
  const QByteArray start = file.read(4);
  return IsKmzData(start.constData(), static_cast<std::size_t>(start.size()));
}

QByteArray UnzipBytes(const QByteArray& bytes, const QString& entry, QString* error) {
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  return Unzip(buffer, QString(), entry, error);
}

QByteArray UnzipFile(const QString& path, const QString& entry, QString* error) {
  QFile file(path);
  file.open(QIODevice::ReadOnly);
  return Unzip(file, path, entry, error);
}

QStringList ListEntries(const QByteArray& bytes) {
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  return List(buffer);
}

QStringList ListFileEntries(const QString& path) {
  QFile file(path);
  file.open(QIODevice::ReadOnly);
  return List(file);
}

} // namespace vorrel::kmz
