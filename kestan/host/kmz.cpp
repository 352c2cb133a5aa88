#include "kestan/host/kmz.h"

#include "kestan/host/spinlock.h"
#include "kestan/host/tr.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <minizip/unzip.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>

namespace vorrel::kmz {

namespace {

SpinLock s_lock;
Limits s_limits;

// minizip reads through these; the stream is the device itself.
QIODevice* Device(voidpf stream) { return static_cast<QIODevice*>(stream); }

voidpf OpenDevice(voidpf, const void* device, int) { return const_cast<void*>(device); }

uLong ReadDevice(voidpf, voidpf stream, void* buffer, uLong size) {
  const qint64 count = Device(stream)->read(static_cast<char*>(buffer), static_cast<qint64>(size));
  return count < 0 ? 0 : static_cast<uLong>(count);
}

uLong WriteDevice(voidpf, voidpf, const void*, uLong) { return 0; }

ZPOS64_T TellDevice(voidpf, voidpf stream) { return static_cast<ZPOS64_T>(Device(stream)->pos()); }

long SeekDevice(voidpf, voidpf stream, ZPOS64_T offset, int origin) {
  QIODevice* const device = Device(stream);
  const qint64 base = origin == ZLIB_FILEFUNC_SEEK_CUR   ? device->pos()
                      : origin == ZLIB_FILEFUNC_SEEK_END ? device->size()
                                                         : 0;
  const qint64 target = base + static_cast<qint64>(offset);
  return target >= 0 && target <= device->size() && device->seek(target) ? 0 : -1;
}

int CloseDevice(voidpf, voidpf) { return 0; }

int DeviceError(voidpf, voidpf) { return 0; }

/// The form of an entry's name in which two are compared.
QString PlainName(QString name) {
  name.replace(QLatin1Char('\\'), QLatin1Char('/'));
  int start = 0;
  for (;;) {
    if (name.size() > start && name[start] == QLatin1Char('/'))
      start += 1;
    else if (name.size() > start + 1 && name[start] == QLatin1Char('.') &&
             name[start + 1] == QLatin1Char('/'))
      start += 2;
    else
      return name.mid(start).toCaseFolded();
  }
}

/// Names are UTF-8 by the archive's word or by custom; old archivers wrote 8-bit names.
QString DecodeName(const QByteArray& name) {
  const QString text = QString::fromUtf8(name);
  return text.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(name) : text;
}

/// An open archive, standing at one of its entries.
class Archive {
public:
  explicit Archive(QIODevice& device) : size_(device.size()) {
    zlib_filefunc64_def functions = {OpenDevice, ReadDevice,  WriteDevice, TellDevice,
                                     SeekDevice, CloseDevice, DeviceError, nullptr};
    if (device.isOpen())
      file_ = unzOpen2_64(&device, &functions);
  }
  ~Archive() {
    if (file_)
      unzClose(file_);
  }
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  bool IsOpen() const { return file_ != nullptr; }
  bool First() { return file_ && unzGoToFirstFile(file_) == UNZ_OK; }
  bool Next() { return unzGoToNextFile(file_) == UNZ_OK; }

  QString Name() const {
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(file_, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
      return QString();
    QByteArray name(static_cast<int>(info.size_filename), '\0');
    if (unzGetCurrentFileInfo64(file_, &info, name.data(), info.size_filename, nullptr, 0, nullptr,
                                0) != UNZ_OK)
      return QString();
    return DecodeName(name);
  }

  /// Goes to the entry, or to the document for a null name.
  bool Find(const QString& entry) {
    const QString wanted = entry.isNull() ? QStringLiteral("doc.kml") : PlainName(entry);
    unz64_file_pos firstKml;
    bool hasKml = false;
    for (bool more = First(); more; more = Next()) {
      const QString name = PlainName(Name());
      if (name == wanted)
        return true;
      if (!hasKml && entry.isNull() && name.endsWith(QLatin1String(".kml")))
        hasKml = unzGetFilePos64(file_, &firstKml) == UNZ_OK;
    }
    return hasKml && unzGoToFilePos64(file_, &firstKml) == UNZ_OK;
  }

  /// Unpacks the present entry. Null, and a reason, on failure.
  QByteArray Read(const Limits& limits, QString& reason) {
    unz_file_info64 info;
    constexpr uLong kEncrypted = 1;
    if (unzGetCurrentFileInfo64(file_, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK) {
      reason = Damaged();
      return QByteArray();
    }
    if ((info.flag & kEncrypted) != 0) {
      reason = tr("it is encrypted", "Reason why an entry of a KMZ file can't be read");
      return QByteArray();
    }
    // The sizes that an archive tells may be wrong: the packed one can't exceed the archive, and
    // the other is only a hint, so that a lie costs no memory.
    const qint64 packed = std::min(Clamped(info.compressed_size), size_);
    const qint64 byRatio = packed > limits.maxEntrySize / std::max<qint64>(limits.maxRatio, 1)
                               ? limits.maxEntrySize
                               : packed * limits.maxRatio;
    const qint64 largest =
        std::min({limits.maxEntrySize, std::max(byRatio, limits.freeSize), kLargestByteArray});
    if (Clamped(info.uncompressed_size) > largest) {
      reason = TooLarge(largest);
      return QByteArray();
    }
    if (unzOpenCurrentFile(file_) != UNZ_OK) {
      reason = Damaged();
      return QByteArray();
    }
    QByteArray bytes("");
    const bool good = ReadOpen(Clamped(info.uncompressed_size), largest, bytes, reason);
    // Closing tells whether the checksum was right, once all bytes were read.
    if (unzCloseCurrentFile(file_) != UNZ_OK && good) {
      reason = Damaged();
      return QByteArray();
    }
    return good ? bytes : QByteArray();
  }

private:
  static constexpr qint64 kLargestByteArray = (qint64(1) << 31) - (qint64(1) << 20);

  static qint64 Clamped(ZPOS64_T size) {
    constexpr ZPOS64_T kMost = ZPOS64_T(1) << 62;
    return static_cast<qint64>(std::min(size, kMost));
  }

  static QString Damaged() {
    return tr("it is damaged", "Reason why an entry of a KMZ file can't be read");
  }

  static QString TooLarge(qint64 largest) {
    return tr("it is larger than the %1 bytes allowed",
              "Reason why an entry of a KMZ file can't be read")
        .arg(largest);
  }

  bool ReadOpen(qint64 expected, qint64 largest, QByteArray& bytes, QString& reason) {
    constexpr int kPiece = 1 << 20;
    constexpr qint64 kTrusted = 16 << 20;
    bytes.reserve(static_cast<int>(std::min(expected, kTrusted)) + 1);
    for (;;) {
      const int had = bytes.size();
      bytes.resize(static_cast<int>(std::min<qint64>(qint64(had) + kPiece, largest + 1)));
      const int count =
          unzReadCurrentFile(file_, bytes.data() + had, static_cast<unsigned>(bytes.size() - had));
      if (count < 0) {
        reason = Damaged();
        return false;
      }
      bytes.resize(had + count);
      if (bytes.size() > largest) {
        reason = TooLarge(largest);
        return false;
      }
      if (count == 0)
        break;
    }
    if (bytes.size() != expected) {
      reason = Damaged();
      return false;
    }
    return true;
  }

  unzFile file_ = nullptr;
  const qint64 size_;
};

QByteArray Unzip(QIODevice& device, const QString& archiveName, const QString& entry,
                 QString* error) {
  QString reason;
  QByteArray bytes;
  if (Archive archive(device); !archive.IsOpen())
    reason = tr("it is no archive", "Reason why an entry of a KMZ file can't be read");
  else if (!archive.Find(entry))
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
  Archive archive(device);
  for (bool more = archive.First(); more; more = archive.Next()) {
    const QString name = archive.Name();
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
