#include "kestan/host/kmzdirectory.h"

#include "kestan/host/entryname.h"
#include "kestan/host/path.h"

#include <QIODevice>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace vorrel::kmz {

namespace {

/// Stand in fields of 32 and 16 bits for what doesn't fit; the value is elsewhere then.
constexpr quint32 kElsewhere = 0xFFFFFFFF;
constexpr quint16 kElsewhere16 = 0xFFFF;

constexpr int kEndSize = 22;
constexpr int kLocatorSize = 20;
constexpr int kLargeEndSize = 56;
constexpr int kEntrySize = 46;
constexpr quint16 kNameIsUtf8 = 1U << 11;

quint16 Get16(const char* at) { return qFromLittleEndian<quint16>(at); }
quint32 Get32(const char* at) { return qFromLittleEndian<quint32>(at); }
quint64 Get64(const char* at) { return qFromLittleEndian<quint64>(at); }

QByteArray ReadAt(QIODevice& device, qint64 place, qint64 size) {
  const bool isInside = place >= 0 && place <= device.size();
  return isInside && device.seek(place) ? device.read(size) : QByteArray();
}

/// Where the directory lies.
struct Extent {
  quint64 end;    ///< Of the directory, in the device.
  quint64 size;   ///< Of the directory.
  quint64 offset; ///< Its start by the archive's word, which counts from the archive's start.
};

/// Reads the larger form of an archive's end, when there is one in front of the end at `place`.
void ReadLargeEnd(QIODevice& device, qint64 place, Extent& extent) {
  const QByteArray locator = ReadAt(device, place - kLocatorSize, kLocatorSize);
  if (locator.size() < kLocatorSize || !locator.startsWith("PK\6\7"))
    return;
  // With something in front of the archive, the place that it tells is another one.
  const auto told = static_cast<qint64>(Get64(locator.constData() + 8));
  for (const qint64 start : {told, place - kLocatorSize - kLargeEndSize}) {
    const QByteArray end = ReadAt(device, start, kLargeEndSize);
    if (end.size() < kLargeEndSize || !end.startsWith("PK\6\6"))
      continue;
    extent = {static_cast<quint64>(start), Get64(end.constData() + 40),
              Get64(end.constData() + 48)};
    return;
  }
}

/// The directory's bytes, and how far the archive's start is from the device's. Null when what
/// stands at `place` is no end of an archive.
QByteArray ReadDirectory(QIODevice& device, qint64 place, const char* end, quint64& shift) {
  Extent extent{static_cast<quint64>(place), Get32(end + 12), Get32(end + 16)};
  const bool isLarge =
      extent.size == kElsewhere || extent.offset == kElsewhere || Get16(end + 10) == kElsewhere16;
  if (isLarge)
    ReadLargeEnd(device, place, extent);
  if (extent.size > extent.end || extent.offset > extent.end - extent.size ||
      extent.size > std::numeric_limits<int>::max() / 2)
    return QByteArray();
  const quint64 start = extent.end - extent.size;
  shift = start - extent.offset;
  const QByteArray bytes =
      ReadAt(device, static_cast<qint64>(start), static_cast<qint64>(extent.size));
  const bool isGood = static_cast<quint64>(bytes.size()) == extent.size &&
                      (bytes.isEmpty() || bytes.startsWith("PK\1\2"));
  return !isGood ? QByteArray() : bytes.isNull() ? QByteArray("") : bytes;
}

/// Calls `use(data, size)` for each field of that kind among an entry's extra ones.
template <class Use> void ForEachExtra(const char* extra, int size, quint16 kind, Use use) {
  constexpr int kHeader = 4;
  for (int at = 0; at + kHeader <= size;) {
    const int fieldSize = std::min<int>(Get16(extra + at + 2), size - at - kHeader);
    if (Get16(extra + at) == kind)
      use(extra + at + kHeader, fieldSize);
    at += kHeader + fieldSize;
  }
}

/// Takes the values that are too large for their own fields from an extra one.
void ReadLargeValues(const char* extra, int extraSize, DirectoryEntry& entry) {
  constexpr quint16 kLargeValues = 1;
  ForEachExtra(extra, extraSize, kLargeValues, [&entry](const char* data, int size) {
    int at = 0;
    for (quint64* const value : {&entry.size, &entry.packedSize, &entry.offset}) {
      if (*value != kElsewhere || at + 8 > size)
        continue;
      *value = Get64(data + at);
      at += 8;
    }
  });
}

/// Names are UTF-8 by the archive's word, by an extra field, or by custom, and else in the code
/// page that archivers began with.
void ReadName(const QByteArray& name, const char* extra, int extraSize, DirectoryEntry& entry) {
  constexpr quint16 kUnicodePath = 0x7075;
  const QString text = QString::fromUtf8(name);
  if ((entry.flags & kNameIsUtf8) != 0) {
    entry.name = text;
    return;
  }
  ForEachExtra(extra, extraSize, kUnicodePath, [&](const char* data, int size) {
    constexpr int kHeader = 5;
    const auto checksum =
        crc32(0, reinterpret_cast<const Bytef*>(name.constData()), static_cast<uInt>(name.size()));
    // An archiver that renamed the entry without knowing the field has left another name in it.
    if (size > kHeader && data[0] == 1 && Get32(data + 1) == checksum)
      entry.name = QString::fromUtf8(data + kHeader, size - kHeader);
  });
  if (!entry.name.isNull())
    return;
  const bool isUtf8 = !text.contains(QChar::ReplacementCharacter);
  entry.name = isUtf8 ? text : DecodeCodePage437(name);
  if (isUtf8 && text.size() < name.size())
    entry.otherName = DecodeCodePage437(name);
}

} // namespace

bool Directory::Read(QIODevice& device) {
  // A comment of any length may stand behind the end.
  constexpr qint64 kLongestComment = 0xFFFF;
  const qint64 size = device.size();
  const qint64 tailStart = std::max<qint64>(0, size - kEndSize - kLongestComment);
  const QByteArray tail = ReadAt(device, tailStart, size - tailStart);
  for (int at = static_cast<int>(tail.size()) - kEndSize; at >= 0; --at) {
    at = static_cast<int>(tail.lastIndexOf("PK\5\6", at));
    if (at < 0)
      return false;
    quint64 shift = 0;
    const QByteArray bytes = ReadDirectory(device, tailStart + at, tail.constData() + at, shift);
    if (bytes.isNull())
      continue;
    ReadEntries(bytes, shift);
    return true;
  }
  return false;
}

void Directory::ReadEntries(const QByteArray& bytes, quint64 shift) {
  for (int at = 0; at + kEntrySize <= bytes.size();) {
    const char* const fields = bytes.constData() + at;
    const int nameSize = Get16(fields + 28);
    const int extraSize = Get16(fields + 30);
    const int next = at + kEntrySize + nameSize + extraSize + Get16(fields + 32);
    if (Get32(fields) != 0x02014B50 || next > bytes.size())
      break; // what came so far can be read all the same
    DirectoryEntry entry{};
    entry.flags = Get16(fields + 8);
    entry.method = Get16(fields + 10);
    entry.checksum = Get32(fields + 16);
    entry.packedSize = Get32(fields + 20);
    entry.size = Get32(fields + 24);
    entry.offset = Get32(fields + 42);
    const char* const name = fields + kEntrySize;
    ReadLargeValues(name + nameSize, extraSize, entry);
    ReadName(QByteArray::fromRawData(name, nameSize), name + nameSize, extraSize, entry);
    entry.offset += shift;
    entries_.push_back(std::move(entry));
    at = next;
  }
}

const DirectoryEntry* Directory::Find(const QString& name) {
  if (index_.isEmpty())
    MakeIndex();
  const auto found = index_.constFind(PlainName(name));
  return found != index_.constEnd() ? &entries_[*found] : nullptr;
}

const DirectoryEntry* Directory::FindReference(const QString& name) {
  const DirectoryEntry* const literal = Find(name);
  return literal ? literal : Find(file::Unescaped(name));
}

void Directory::MakeIndex() {
  for (QString DirectoryEntry::*const form : {&DirectoryEntry::name, &DirectoryEntry::otherName}) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      const QString& name = entries_[i].*form;
      if (name.isNull())
        continue;
      const QString plain = PlainName(name);
      if (!index_.contains(plain))
        index_.insert(plain, i);
    }
  }
}

const DirectoryEntry* Directory::FindDocument() const {
  const DirectoryEntry* firstKml = nullptr;
  for (const DirectoryEntry& entry : entries_) {
    const QString name = PlainName(entry.name);
    if (name == QLatin1String("doc.kml"))
      return &entry;
    if (!firstKml && name.endsWith(QLatin1String(".kml")) &&
        !name.startsWith(QLatin1String("__macosx/")))
      firstKml = &entry;
  }
  return firstKml;
}

QString Directory::GetDocumentFolder() const {
  const DirectoryEntry* const document = FindDocument();
  if (!document)
    return QString();
  const QString path = EntryPath(document->name);
  const QString folder = path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
  return file::Cleaned(folder) == folder ? folder : QString(); // one may lead out of the archive
}

} // namespace vorrel::kmz
