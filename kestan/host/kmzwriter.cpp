#include "kestan/host/kmzwriter.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <minizip/zip.h>

#include <algorithm>

namespace vorrel::kmz {

namespace {

voidpf OpenDevice(voidpf, const void* device, int) { return const_cast<void*>(device); }

uLong ReadDevice(voidpf, voidpf, void*, uLong) { return 0; }

int CloseDevice(voidpf, voidpf) { return 0; }

int DeviceError(voidpf, voidpf) { return 0; }

/// Reads until the buffer is full or there's nothing more.
bool ReadFull(QIODevice& device, char* buffer, qint64 size, qint64& count) {
  count = 0;
  while (count < size) {
    const qint64 step = device.read(buffer + count, size - count);
    if (step <= 0)
      return step == 0;
    count += step;
  }
  return true;
}

constexpr qint64 kPiece = 1 << 18;

/// The largest count that an archive's plain end has room for.
constexpr quint16 kMostEntries = 0xFFFF;

constexpr int kLocatorSize = 20;
constexpr int kPlainEndSize = 22;
/// What stands at the end of an archive: where its large end lies, if it has one, and its plain
/// end.
constexpr int kEndSize = kLocatorSize + kPlainEndSize;

} // namespace

Writer::Writer(QIODevice& device) : output_{&device, true, QByteArray()} {
  // minizip loses memory when a write fails, so that it doesn't hear of it: nothing more is written
  // then, and the archive is never good.
  const auto write = [](voidpf, voidpf stream, const void* buffer, uLong size) {
    auto& output = *static_cast<Output*>(stream);
    const auto count = static_cast<qint64>(size);
    const auto* const data = static_cast<const char*>(buffer);
    output.good = output.good && output.device->write(data, count) == count;
    if (count <= kEndSize)
      output.end = (output.end + QByteArray(data, static_cast<int>(count))).right(kEndSize);
    return size;
  };
  const auto tell = [](voidpf, voidpf stream) {
    return static_cast<ZPOS64_T>(static_cast<Output*>(stream)->device->pos());
  };
  const auto seek = [](voidpf, voidpf stream, ZPOS64_T offset, int origin) {
    auto& output = *static_cast<Output*>(stream);
    const qint64 base = origin == ZLIB_FILEFUNC_SEEK_CUR   ? output.device->pos()
                        : origin == ZLIB_FILEFUNC_SEEK_END ? output.device->size()
                                                           : 0;
    output.good = output.good && output.device->seek(base + static_cast<qint64>(offset));
    return 0L;
  };
  zlib_filefunc64_def functions = {OpenDevice, ReadDevice,  write,       tell,
                                   seek,       CloseDevice, DeviceError, nullptr};
  file_ = zipOpen2_64(&output_, APPEND_STATUS_CREATE, nullptr, &functions);
  good_ = file_ != nullptr;
}

Writer::~Writer() {
  if (file_)
    zipClose(file_, nullptr);
}

bool Writer::Open(const QString& name, qint64 size) {
  constexpr uLong kNameIsUtf8 = 1U << 11;
  // From here on, the packed form of a content that doesn't pack may need more than 32 bits.
  constexpr qint64 kLarge = 0xF0000000;
  const bool stored = name.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive);
  // Without a date, tools show the month 0.
  constexpr uLong kFirstDay = (1U << 5) | 1U;
  const zip_fileinfo info{{}, kFirstDay, 0, 0};
  ++count_;
  good_ = IsGood() && zipOpenNewFileInZip4_64(file_, name.toUtf8().constData(), &info, nullptr, 0,
                                              nullptr, 0, nullptr, stored ? 0 : Z_DEFLATED,
                                              stored ? Z_NO_COMPRESSION : Z_DEFAULT_COMPRESSION, 0,
                                              -MAX_WBITS, DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY,
                                              nullptr, 0, 0, kNameIsUtf8, size >= kLarge) == ZIP_OK;
  return good_;
}

bool Writer::Write(const char* data, qint64 size) {
  for (qint64 at = 0; IsGood() && at < size; at += kPiece) {
    const auto count = static_cast<unsigned>(std::min(kPiece, size - at));
    good_ = zipWriteInFileInZip(file_, data + at, count) == ZIP_OK;
  }
  return IsGood();
}

bool Writer::Add(const QString& name, const char* data, qint64 size) {
  if (!Open(name, size))
    return false;
  Write(data, size);
  good_ = zipCloseFileInZip(file_) == ZIP_OK && good_;
  return IsGood();
}

Writer::Result Writer::Add(const QString& name, QIODevice& contents) {
  const qint64 size = contents.size();
  QByteArray piece(static_cast<int>(std::min(size, kPiece)), '\0');
  qint64 count = 0;
  // An entry can't be taken back, so the first piece has to be there before it begins. What fits
  // into it may be shorter than it was.
  if (!ReadFull(contents, piece.data(), piece.size(), count))
    return kUnreadable;
  if (size <= kPiece)
    return Add(name, piece.constData(), count) ? kAdded : kFailed;

  if (!Open(name, size))
    return kFailed;
  Result result = Write(piece.constData(), count) ? kAdded : kFailed;
  for (qint64 at = count; result == kAdded && at < size; at += count) {
    const bool read = ReadFull(contents, piece.data(), std::min(kPiece, size - at), count);
    if (!read || count == 0)
      result = kCutShort;
    else if (!Write(piece.constData(), count))
      result = kFailed;
  }
  const bool closed = zipCloseFileInZip(file_) == ZIP_OK;
  good_ = good_ && closed && result == kAdded;
  return result == kAdded && !IsGood() ? kFailed : result;
}

bool Writer::Close() {
  const bool closed = file_ && zipClose(file_, nullptr) == ZIP_OK;
  file_ = nullptr;
  return closed && IsGood() && (count_ <= kMostEntries || WriteLargeEnd());
}

/// minizip writes a large end where the directory lies far out, but not all of its versions do so
/// for many entries.
bool Writer::WriteLargeEnd() {
  if (output_.end.startsWith("PK\6\7"))
    return true;
  QByteArray end = output_.end.right(kPlainEndSize);
  const quint64 place = static_cast<quint64>(output_.device->pos()) - kPlainEndSize;
  QByteArray large;
  QDataStream out(&large, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  constexpr quint16 kVersion = 45;
  constexpr quint64 kSizeFromHere = 44;
  constexpr quint32 kNoDisk = 0;
  out.writeRawData("PK\6\6", 4);
  out << kSizeFromHere << kVersion << kVersion << kNoDisk << kNoDisk << count_ << count_
      << quint64(qFromLittleEndian<quint32>(end.constData() + 12))
      << quint64(qFromLittleEndian<quint32>(end.constData() + 16));
  out.writeRawData("PK\6\7", 4);
  out << kNoDisk << place << quint32(1);
  end.replace(8, 4, "\xFF\xFF\xFF\xFF");
  large += end;
  QIODevice& device = *output_.device;
  return device.seek(static_cast<qint64>(place)) && device.write(large) == large.size();
}

} // namespace vorrel::kmz
