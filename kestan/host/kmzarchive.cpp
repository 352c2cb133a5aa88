#include "kestan/host/kmzarchive.h"

#include "kestan/host/kmz.h"
#include "kestan/host/tr.h"

#include <QIODevice>
#include <QScopedValueRollback>
#include <QtEndian>

#include <minizip/unzip.h>

#include <algorithm>

namespace vorrel::kmz {

namespace {

constexpr qint64 kLargestByteArray = (qint64(1) << 31) - (qint64(1) << 20);

/// Stands in an archive's fields of 32 bits for what doesn't fit; the value is elsewhere then.
constexpr quint64 kElsewhere = 0xFFFFFFFF;

voidpf OpenDevice(voidpf, const void* device, int) { return const_cast<void*>(device); }

uLong WriteDevice(voidpf, voidpf, const void*, uLong) { return 0; }

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

qint64 Clamped(ZPOS64_T size) {
  constexpr ZPOS64_T kMost = ZPOS64_T(1) << 62;
  return static_cast<qint64>(std::min(size, kMost));
}

QString Damaged() { return tr("it is damaged", "Reason why an entry of a KMZ file can't be read"); }

QString TooLarge(qint64 largest) {
  return tr("it is larger than the %1 bytes allowed",
            "Reason why an entry of a KMZ file can't be read")
      .arg(largest);
}

bool GetInfo(unzFile file, unz_file_info64& info) {
  return unzGetCurrentFileInfo64(file, &info, nullptr, 0, nullptr, 0, nullptr, 0) == UNZ_OK;
}

/// What an entry may unpack to. The packed size that an archive tells may be wrong, but it can't
/// exceed the archive.
qint64 GetLargest(const unz_file_info64& info, qint64 archiveSize, const Limits& limits) {
  const qint64 packed = std::min(Clamped(info.compressed_size), archiveSize);
  const qint64 byRatio = packed > limits.maxEntrySize / std::max<qint64>(limits.maxRatio, 1)
                             ? limits.maxEntrySize
                             : packed * limits.maxRatio;
  return std::min({limits.maxEntrySize, std::max(byRatio, limits.freeSize), kLargestByteArray});
}

} // namespace

long Archive::Input::Seek(void*, void* stream, quint64 offset, int origin) {
  const auto& input = *static_cast<Input*>(stream);
  QIODevice& device = *input.device;
  const qint64 base = origin == ZLIB_FILEFUNC_SEEK_CUR   ? device.pos()
                      : origin == ZLIB_FILEFUNC_SEEK_END ? device.size()
                                                         : 0;
  if (origin == ZLIB_FILEFUNC_SEEK_SET && offset >= kElsewhere)
    offset += input.shift;
  const qint64 target = base + static_cast<qint64>(offset);
  return target >= 0 && target <= device.size() && device.seek(target) ? 0 : -1;
}

Archive::Archive(QIODevice& device) : input_{&device, 0}, size_(device.size()) {
  const auto read = [](voidpf, voidpf stream, void* buffer, uLong size) {
    const qint64 count = static_cast<Input*>(stream)->device->read(static_cast<char*>(buffer),
                                                                   static_cast<qint64>(size));
    return count < 0 ? 0 : static_cast<uLong>(count);
  };
  const auto tell = [](voidpf, voidpf stream) {
    return static_cast<ZPOS64_T>(static_cast<Input*>(stream)->device->pos());
  };
  const auto seek = [](voidpf opaque, voidpf stream, ZPOS64_T offset, int origin) {
    return Input::Seek(opaque, stream, offset, origin);
  };
  zlib_filefunc64_def functions = {OpenDevice, read,        WriteDevice, tell,
                                   seek,       CloseDevice, DeviceError, nullptr};
  if (device.isOpen())
    file_ = unzOpen2_64(&input_, &functions);
}

Archive::~Archive() {
  if (file_)
    unzClose(file_);
}

bool Archive::First() { return file_ && unzGoToFirstFile(file_) == UNZ_OK; }

bool Archive::Next() { return unzGoToNextFile(file_) == UNZ_OK; }

QString Archive::Name() const {
  unz_file_info64 info;
  if (!GetInfo(file_, info))
    return QString();
  QByteArray name(static_cast<int>(info.size_filename), '\0');
  if (unzGetCurrentFileInfo64(file_, &info, name.data(), info.size_filename, nullptr, 0, nullptr,
                              0) != UNZ_OK)
    return QString();
  return DecodeName(name);
}

bool Archive::Find(const QString& entry) {
  if (entry.isNull())
    return FindDocument();
  if (!hasIndex_)
    MakeIndex();
  const auto found = index_.constFind(PlainName(entry));
  return found != index_.constEnd() && GoTo(*found);
}

bool Archive::FindDocument() {
  Position firstKml{};
  bool hasKml = false;
  for (bool more = First(); more; more = Next()) {
    const QString name = PlainName(Name());
    if (name == QLatin1String("doc.kml"))
      return true;
    if (!hasKml && name.endsWith(QLatin1String(".kml"))) {
      firstKml = GetPosition();
      hasKml = true;
    }
  }
  return hasKml && GoTo(firstKml);
}

void Archive::MakeIndex() {
  hasIndex_ = true;
  for (bool more = First(); more; more = Next()) {
    const QString name = PlainName(Name());
    if (!index_.contains(name))
      index_.insert(name, GetPosition());
  }
}

Archive::Position Archive::GetPosition() const {
  unz64_file_pos position{};
  unzGetFilePos64(file_, &position);
  return {position.pos_in_zip_directory, position.num_of_file};
}

bool Archive::GoTo(const Position& position) {
  const unz64_file_pos place{position.offset, position.number};
  return unzGoToFilePos64(file_, &place) == UNZ_OK;
}

/// Where an entry begins is told elsewhere beyond 4 GiB. minizip doesn't look there.
quint64 Archive::GetShift() const {
  unz_file_info64 info;
  if (!GetInfo(file_, info) || info.size_file_extra == 0)
    return 0;
  QByteArray extra(static_cast<int>(info.size_file_extra), '\0');
  if (unzGetCurrentFileInfo64(file_, &info, nullptr, 0, extra.data(), info.size_file_extra, nullptr,
                              0) != UNZ_OK)
    return 0;
  constexpr int kHeader = 4;
  constexpr int kLargeSizes = 1;
  for (int at = 0; at + kHeader <= extra.size();) {
    const char* const field = extra.constData() + at;
    const int size = qFromLittleEndian<quint16>(field + 2);
    const int before =
        (info.uncompressed_size == kElsewhere) + (info.compressed_size == kElsewhere);
    const int place = kHeader + 8 * before;
    if (qFromLittleEndian<quint16>(field) == kLargeSizes && kHeader + size >= place + 8 &&
        at + place + 8 <= extra.size()) {
      const auto offset = qFromLittleEndian<quint64>(field + place);
      return offset > kElsewhere && offset < static_cast<quint64>(size_) ? offset - kElsewhere : 0;
    }
    at += kHeader + size;
  }
  return 0;
}

bool Archive::IsReadable(const Limits& limits, QString& reason) const {
  constexpr uLong kEncrypted = 1;
  unz_file_info64 info;
  if (!GetInfo(file_, info)) {
    reason = Damaged();
    return false;
  }
  if ((info.flag & kEncrypted) != 0) {
    reason = tr("it is encrypted", "Reason why an entry of a KMZ file can't be read");
    return false;
  }
  const qint64 largest = GetLargest(info, size_, limits);
  if (Clamped(info.uncompressed_size) > largest) {
    reason = TooLarge(largest);
    return false;
  }
  return true;
}

QByteArray Archive::Read(const Limits& limits, QString& reason) {
  if (!IsReadable(limits, reason))
    return QByteArray();
  unz_file_info64 info;
  const bool known = GetInfo(file_, info);
  // As long as the entry is open, nothing reads the directory, which may lie that far out too.
  const QScopedValueRollback<quint64> guard(input_.shift, GetShift());
  if (!known || unzOpenCurrentFile(file_) != UNZ_OK) {
    reason = Damaged();
    return QByteArray();
  }
  QByteArray bytes("");
  const bool good =
      ReadOpen(Clamped(info.uncompressed_size), GetLargest(info, size_, limits), bytes, reason);
  // Closing tells whether the checksum was right, once all bytes were read.
  if (unzCloseCurrentFile(file_) != UNZ_OK && good) {
    reason = Damaged();
    return QByteArray();
  }
  return good ? bytes : QByteArray();
}

/// The size that the archive tells is only a hint, so that a lie costs no memory.
bool Archive::ReadOpen(qint64 expected, qint64 largest, QByteArray& bytes, QString& reason) {
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

} // namespace vorrel::kmz
