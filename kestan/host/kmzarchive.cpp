#include "kestan/host/kmzarchive.h"

#include "kestan/host/kmz.h"
#include "kestan/host/kmzdirectory.h"
#include "kestan/host/tr.h"

#include <QIODevice>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace vorrel::kmz {

namespace {

constexpr quint16 kStored = 0;
constexpr quint16 kDeflated = 8;

qint64 Clamped(quint64 size) {
  return static_cast<qint64>(std::min<quint64>(size, std::numeric_limits<qint64>::max()));
}

QString Damaged() { return tr("it is damaged", "Reason why an entry of a KMZ file can't be read"); }

QString TooLarge(qint64 largest) {
  return tr("it is larger than the %1 bytes allowed",
            "Reason why an entry of a KMZ file can't be read")
      .arg(largest);
}

QString OtherMethod(quint16 method) {
  struct Method {
    quint16 number;
    const char* name;
  };
  static constexpr Method kMethods[] = {
      {1, "Shrink"}, {2, "Reduce"},     {3, "Reduce"},     {4, "Reduce"},
      {5, "Reduce"}, {6, "Implode"},    {9, "Deflate64"},  {12, "bzip2"},
      {14, "LZMA"},  {20, "Zstandard"}, {93, "Zstandard"}, {94, "MP3"},
      {95, "XZ"},    {96, "JPEG"},      {97, "WavPack"},   {98, "PPMd"},
  };
  const auto* const known = std::find_if(std::begin(kMethods), std::end(kMethods),
                                         [method](const Method& m) { return m.number == method; });
  QString name = QString::number(method);
  if (known != std::end(kMethods))
    name = QLatin1String(known->name) + QStringLiteral(" (%1)").arg(name);
  return tr("it is packed by a method that isn't supported: %1",
            "Reason why an entry of a KMZ file can't be read; the method")
      .arg(name);
}

/// What an entry may unpack to. The packed size that an archive tells may be wrong, but it can't
/// exceed the archive.
qint64 GetLargest(const DirectoryEntry& entry, qint64 archiveSize, const Limits& limits) {
  constexpr qint64 kLargestByteArray = (qint64(1) << 31) - (qint64(1) << 20);
  const qint64 packed = std::min(Clamped(entry.packedSize), archiveSize);
  const qint64 byRatio = packed > limits.maxEntrySize / std::max<qint64>(limits.maxRatio, 1)
                             ? limits.maxEntrySize
                             : packed * limits.maxRatio;
  return std::min({limits.maxEntrySize, std::max(byRatio, limits.freeSize), kLargestByteArray});
}

/// Goes to where the entry's bytes begin. False where there is no entry.
bool GoToContent(QIODevice& device, const DirectoryEntry& entry) {
  constexpr int kHeaderSize = 30;
  // Devices complain aloud of places that they don't have.
  const auto goTo = [&device](qint64 place) {
    return place <= device.size() && device.seek(place);
  };
  if (!goTo(Clamped(entry.offset)))
    return false;
  const QByteArray header = device.read(kHeaderSize);
  if (header.size() < kHeaderSize || !header.startsWith("PK\3\4"))
    return false;
  return goTo(device.pos() + qFromLittleEndian<quint16>(header.constData() + 26) +
              qFromLittleEndian<quint16>(header.constData() + 28));
}

/// Undoes the packing of one entry, piece by piece.
class Unpacker {
public:
  Unpacker(QIODevice& device, const DirectoryEntry& entry)
      : device_(device), left_(Clamped(entry.packedSize)), isDeflated_(entry.method == kDeflated) {
    isOpen_ = isDeflated_ && inflateInit2(&stream_, -MAX_WBITS) == Z_OK;
  }
  ~Unpacker() {
    if (isOpen_)
      inflateEnd(&stream_);
  }
  Unpacker(const Unpacker&) = delete;
  Unpacker& operator=(const Unpacker&) = delete;

  /// Answers how many bytes came: fewer than there's room for only at the end, -1 on failure.
  int Read(char* to, int size) { return isDeflated_ ? Inflate(to, size) : Copy(to, size); }

private:
  int Copy(char* to, int size) {
    const auto count = static_cast<int>(device_.read(to, std::min<qint64>(size, left_)));
    left_ -= std::max(count, 0);
    return count;
  }

  int Inflate(char* to, int size) {
    stream_.next_out = reinterpret_cast<Bytef*>(to);
    stream_.avail_out = static_cast<uInt>(size);
    while (isOpen_ && !isAtEnd_ && stream_.avail_out > 0) {
      if (stream_.avail_in == 0 && left_ > 0 && !Refill())
        return -1;
      const int result = inflate(&stream_, Z_NO_FLUSH);
      isAtEnd_ = result == Z_STREAM_END;
      if (!isAtEnd_ && result != Z_OK)
        return -1;
    }
    return isOpen_ ? size - static_cast<int>(stream_.avail_out) : -1;
  }

  bool Refill() {
    packed_.resize(static_cast<int>(std::min<qint64>(left_, kPiece)));
    const qint64 count = device_.read(packed_.data(), packed_.size());
    left_ -= std::max<qint64>(count, 0);
    stream_.next_in = reinterpret_cast<Bytef*>(packed_.data());
    stream_.avail_in = static_cast<uInt>(std::max<qint64>(count, 0));
    return count > 0;
  }

  static constexpr qint64 kPiece = 1 << 16;

  QIODevice& device_;
  qint64 left_; ///< Of the packed bytes.
  const bool isDeflated_;
  bool isOpen_ = false;
  bool isAtEnd_ = false;
  QByteArray packed_;
  z_stream stream_{};
};

/// The bytes of an entry of this size. Null when they aren't those that were packed.
QByteArray Unpack(QIODevice& device, const DirectoryEntry& entry, qint64 size) {
  // The size that the archive tells is only a hint, so that a lie costs no memory.
  constexpr qint64 kPiece = 1 << 20;
  constexpr qint64 kTrusted = 16 << 20;
  Unpacker unpacker(device, entry);
  QByteArray bytes("");
  bytes.reserve(static_cast<int>(std::min(size, kTrusted)) + 1);
  for (int count = 1; count > 0;) {
    const int had = static_cast<int>(bytes.size());
    bytes.resize(static_cast<int>(std::min(had + kPiece, size + 1)));
    count = unpacker.Read(bytes.data() + had, static_cast<int>(bytes.size()) - had);
    bytes.resize(had + std::max(count, 0));
    if (count < 0 || bytes.size() > size)
      return QByteArray();
  }
  const auto checksum =
      crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), static_cast<uInt>(bytes.size()));
  return bytes.size() == size && checksum == entry.checksum ? bytes : QByteArray();
}

} // namespace

Archive::Archive(QIODevice& device) : device_(device), directory_(new Directory) {
  if (!device.isOpen() || !directory_->Read(device))
    directory_.reset();
}

Archive::~Archive() = default;

QStringList Archive::GetNames() const {
  QStringList names;
  if (directory_) {
    for (const DirectoryEntry& entry : directory_->GetEntries())
      names.append(entry.name);
  }
  return names;
}

QString Archive::GetDocumentFolder() const {
  return directory_ ? directory_->GetDocumentFolder() : QString();
}

bool Archive::Find(const QString& entry) {
  entry_ = !directory_      ? nullptr
           : entry.isNull() ? directory_->FindDocument()
                            : directory_->Find(entry);
  return entry_;
}

bool Archive::FindReference(const QString& entry) {
  entry_ = directory_ ? directory_->FindReference(entry) : nullptr;
  return entry_;
}

bool Archive::IsReadable(const Limits& limits, QString& reason) const {
  constexpr quint16 kEncrypted = 1;
  if (!entry_) {
    reason = Damaged();
    return false;
  }
  if ((entry_->flags & kEncrypted) != 0) {
    reason = tr("it is encrypted", "Reason why an entry of a KMZ file can't be read");
    return false;
  }
  if (entry_->method != kStored && entry_->method != kDeflated) {
    reason = OtherMethod(entry_->method);
    return false;
  }
  const qint64 largest = GetLargest(*entry_, device_.size(), limits);
  if (Clamped(entry_->size) > largest) {
    reason = TooLarge(largest);
    return false;
  }
  return true;
}

QByteArray Archive::Read(const Limits& limits, QString& reason) {
  if (!IsReadable(limits, reason))
    return QByteArray();
  const QByteArray bytes = GoToContent(device_, *entry_)
                               ? Unpack(device_, *entry_, Clamped(entry_->size))
                               : QByteArray();
  if (bytes.isNull())
    reason = Damaged();
  return bytes;
}

} // namespace vorrel::kmz
