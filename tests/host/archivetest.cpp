#include "kestan/host/kmz.h"
#include "kestan/host/kmzwriter.h"
#include "kestan/host/net.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <minizip/zip.h>

#include <algorithm>
#include <utility>
#include <vector>

using namespace vorrel;

namespace {

using Entries = std::vector<std::pair<QByteArray, QByteArray>>;

class ArchiveTest : public testing::Test {
protected:
  ~ArchiveTest() override { kmz::SetLimits(kmz::Limits()); }

  /// The bytes of an archive with these names and contents.
  QByteArray Pack(const Entries& entries, const char* password = nullptr) {
    const QByteArray path = folder_.filePath("made.kmz").toUtf8();
    QFile::remove(path);
    const zipFile zip = zipOpen64(path.constData(), APPEND_STATUS_CREATE);
    for (const auto& [name, content] : entries) {
      zipOpenNewFileInZip3(zip, name.constData(), nullptr, nullptr, 0, nullptr, 0, nullptr,
                           Z_DEFLATED, Z_BEST_COMPRESSION, 0, -MAX_WBITS, DEF_MEM_LEVEL,
                           Z_DEFAULT_STRATEGY, password, 0);
      zipWriteInFileInZip(zip, content.constData(), static_cast<unsigned>(content.size()));
      zipCloseFileInZip(zip);
    }
    zipClose(zip, nullptr);
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
  }

  /// The text of the error that unpacking ends in.
  QString Error(const QByteArray& archive, const QString& entry = QString()) {
    QString error;
    EXPECT_TRUE(kmz::UnzipBytes(archive, entry, &error).isNull());
    return error;
  }

  QTemporaryDir folder_;
};

/// An entry as its archive tells of it. Values that are told in an extra field stand for themselves
/// there, and the fields that they don't fit in say so.
struct RawEntry {
  QByteArray name;
  QByteArray content;
  QByteArray extra = {}; ///< In the directory.
  quint16 method = 0;
  quint16 flags = 0;
  bool largeSizes = false;
  bool largePlace = false;
};

QByteArray Bytes(quint64 value, int count) {
  QByteArray bytes;
  for (; count > 0; --count, value >>= 8)
    bytes.append(static_cast<char>(value & 0xFF));
  return bytes;
}

quint32 Checksum(const QByteArray& bytes) {
  return static_cast<quint32>(
      crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), static_cast<uInt>(bytes.size())));
}

/// An archive byte by byte, as no archiver of ours makes it.
QByteArray MakeRaw(const std::vector<RawEntry>& entries, const QByteArray& comment = "",
                   bool largeEnd = false) {
  QByteArray archive;
  QByteArray directory;
  for (const RawEntry& e : entries) {
    const auto size = static_cast<quint64>(e.content.size());
    const auto place = static_cast<quint64>(archive.size());
    const QByteArray common = Bytes(20, 2) + Bytes(e.flags, 2) + Bytes(e.method, 2) + Bytes(0, 4) +
                              Bytes(Checksum(e.content), 4);
    const quint64 shown = e.largeSizes ? 0xFFFFFFFF : size;
    QByteArray large;
    if (e.largeSizes)
      large += Bytes(size, 8) + Bytes(size, 8);
    if (e.largePlace)
      large += Bytes(place, 8);
    if (!large.isEmpty())
      large.prepend(Bytes(1, 2) + Bytes(static_cast<quint64>(large.size()), 2));
    const QByteArray extra = e.extra + large;
    const QByteArray sizes =
        Bytes(shown, 4) + Bytes(shown, 4) + Bytes(static_cast<quint64>(e.name.size()), 2);
    archive += "PK\3\4" + common + sizes + Bytes(0, 2) + e.name + e.content;
    directory += "PK\1\2" + Bytes(20, 2) + common + sizes +
                 Bytes(static_cast<quint64>(extra.size()), 2) + Bytes(0, 10) +
                 Bytes(e.largePlace ? 0xFFFFFFFF : place, 4) + e.name + extra;
  }
  const auto start = static_cast<quint64>(archive.size());
  const auto size = static_cast<quint64>(directory.size());
  const auto count = static_cast<quint64>(entries.size());
  archive += directory;
  if (largeEnd) {
    archive += "PK\6\6" + Bytes(44, 8) + Bytes(45, 2) + Bytes(45, 2) + Bytes(0, 8) +
               Bytes(count, 8) + Bytes(count, 8) + Bytes(size, 8) + Bytes(start, 8);
    archive += "PK\6\7" + Bytes(0, 4) + Bytes(start + size, 8) + Bytes(1, 4);
  }
  const quint64 none = 0xFFFFFFFF;
  archive += "PK\5\6" + Bytes(0, 4) + Bytes(largeEnd ? none : count, 2) +
             Bytes(largeEnd ? none : count, 2) + Bytes(largeEnd ? none : size, 4) +
             Bytes(largeEnd ? none : start, 4) + Bytes(static_cast<quint64>(comment.size()), 2) +
             comment;
  return archive;
}

/// The field in which archivers tell a name that their own field has no letters for.
QByteArray UnicodePath(const QByteArray& nameItIsFor, const QByteArray& name) {
  const QByteArray data = Bytes(1, 1) + Bytes(Checksum(nameItIsFor), 4) + name;
  return Bytes(0x7075, 2) + Bytes(static_cast<quint64>(data.size()), 2) + data;
}

/// Holds bytes, and fails from some place on.
class FailingDevice : public QBuffer {
public:
  FailingDevice(OpenMode mode, qint64 good) : good_(good) { open(mode | Unbuffered); }

protected:
  qint64 readData(char* data, qint64 size) override {
    return pos() >= good_ ? -1 : QBuffer::readData(data, std::min(size, good_ - pos()));
  }
  qint64 writeData(const char* data, qint64 size) override {
    return pos() + size > good_ ? -1 : QBuffer::writeData(data, size);
  }

private:
  qint64 good_;
};

/// Bytes that don't pack.
QByteArray Noise(int size) {
  QByteArray noise(size, '\0');
  unsigned state = 1;
  for (char& byte : noise)
    byte = static_cast<char>((state = state * 1664525U + 1013904223U) >> 24);
  return noise;
}

} // namespace

TEST_F(ArchiveTest, TheDocumentIsFoundUnderAnyOfItsNames) {
  const std::pair<Entries, const char*> cases[] = {
      {{{"first.kml", "1"}, {"doc.kml", "2"}}, "2"},
      {{{"first.kml", "1"}, {"DOC.KML", "2"}}, "2"},
      {{{"first.kml", "1"}, {"./doc.kml", "2"}}, "2"},
      {{{"first.kml", "1"}, {"/doc.kml", "2"}}, "2"},
      {{{"first.kml", "1"}, {".\\Doc.kml", "2"}}, "2"},
      {{{"image.png", "0"}, {"first.KML", "1"}, {"second.kml", "2"}}, "1"},
      {{{"dir/doc.kml", "1"}, {"second.kml", "2"}}, "1"},
      {{{"doc.kml", ""}}, ""},
  };
  for (const auto& [entries, content] : cases) {
    SCOPED_TRACE(entries.back().first.constData());
    const QByteArray archive = Pack(entries);
    EXPECT_TRUE(kmz::IsKmzData(archive.constData(), static_cast<std::size_t>(archive.size())));
    QString error = "not cleared";
    const QByteArray bytes = kmz::UnzipBytes(archive, QString(), &error);
    EXPECT_EQ(content, bytes);
    EXPECT_FALSE(bytes.isNull());
    EXPECT_EQ("", error);
  }
  EXPECT_EQ("Could not unpack \"doc.kml\" from kmz file \"\": there is no such file in the archive",
            Error(Pack({{"image.png", "0"}})));
}

TEST_F(ArchiveTest, NamedEntriesAreFoundWhateverTheSlashesAndTheCase) {
  const QByteArray archive = Pack({{"doc.kml", "0"},
                                   {"files\\Image One.PNG", "1"},
                                   {"files/\xC3\xBC.png", "2"},
                                   {"files/", ""},
                                   {"../../evil.kml", "3"}});
  EXPECT_EQ("1", kmz::UnzipBytes(archive, "Files/image one.png"));
  EXPECT_EQ("1", kmz::UnzipBytes(archive, ".\\files\\Image One.png"));
  EXPECT_EQ("2", kmz::UnzipBytes(archive, QString::fromUtf8("files/\xC3\xBC.png")));
  EXPECT_EQ("3", kmz::UnzipBytes(archive, "../../evil.kml"));
  EXPECT_NE("", Error(archive, ""));
  EXPECT_EQ(4, kmz::ListEntries(archive).size());

  const QString path = folder_.filePath("made.kmz");
  bool exists = false;
  EXPECT_TRUE(kmz::IsKmzFile(path, &exists));
  EXPECT_TRUE(exists);
  EXPECT_EQ("0", kmz::UnzipFile(path, QString()));
  EXPECT_EQ(4, kmz::ListFileEntries(path).size());
  EXPECT_EQ("1", net::Fetcher::GetBytesFromKmz(path, "files/image%20one.png"));
  EXPECT_FALSE(kmz::IsKmzFile(folder_.filePath("none"), &exists));
  EXPECT_FALSE(exists);
  EXPECT_TRUE(kmz::UnzipFile(folder_.filePath("none"), QString()).isNull());
}

TEST_F(ArchiveTest, NamesAreReadInTheLettersThatTheirArchiverMeant) {
  const quint16 utf8 = 1U << 11;
  struct Case {
    const char* what;
    RawEntry entry;
    QString name;
    bool found;
  };
  const QString umlaut = QString::fromUtf8("files/\xC3\xA4.png");
  const QString apart = QString::fromUtf8("files/a\xCC\x88.png");
  const QString drawing = QString::fromUtf8("files/\xE2\x94\x9C\xC3\xB1.png");
  const Case cases[] = {
      {"the code page", {"files/\x84.png", "1"}, umlaut, true},
      {"the code page, in another case", {"files/\x8E.PNG", "1"}, umlaut, true},
      {"marked as UTF-8", {"files/\xC3\xA4.png", "1", "", 0, utf8}, umlaut, true},
      {"marked as UTF-8 is never the code page",
       {"files/\xC3\xA4.png", "1", "", 0, utf8},
       drawing,
       false},
      {"UTF-8 by custom", {"files/\xC3\xA4.png", "1"}, umlaut, true},
      {"what might be UTF-8 may be the code page", {"files/\xC3\xA4.png", "1"}, drawing, true},
      {"taken apart in the archive", {"files/a\xCC\x88.png", "1"}, umlaut, true},
      {"taken apart in the reference", {"files/\xC3\xA4.png", "1"}, apart, true},
      {"the field for such names",
       {"files/_.png", "1", UnicodePath("files/_.png", "files/\xC3\xA4.png")},
       umlaut,
       true},
      {"the field of a name that was changed since",
       {"files/_.png", "1", UnicodePath("files/-.png", "files/\xC3\xA4.png")},
       umlaut,
       false},
      {"its own name when the field is another name's",
       {"files/_.png", "1", UnicodePath("files/-.png", "files/\xC3\xA4.png")},
       "files/_.png",
       true},
      {"a field cut short", {"files/_.png", "1", "\x75\x70\xFF\xFF\1"}, "files/_.png", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.found ? QByteArray("1") : QByteArray(),
              kmz::UnzipBytes(MakeRaw({{"doc.kml", "0"}, c.entry}), c.name));
  }
}

TEST_F(ArchiveTest, ArchivesInTheirLargeFormAreRead) {
  const QByteArray content = Noise(3000);
  for (const bool largeEnd : {false, true}) {
    for (const QByteArray& front : {QByteArray(), QByteArray("#!/bin/sh\n")}) {
      const QByteArray archive = front + MakeRaw({{"doc.kml", content, "", 0, 0, true, false},
                                                  {"a", content, "", 0, 0, false, true},
                                                  {"b", content, Bytes(0, 4), 0, 0, true, true}},
                                                 "", largeEnd);
      for (const char* name : {"doc.kml", "a", "b"}) {
        QString error;
        EXPECT_EQ(content, kmz::UnzipBytes(archive, name, &error))
            << name << ' ' << largeEnd << error.toStdString();
      }
      // No value of the large form may lead anywhere when it is wrong.
      for (auto i = archive.size() - 150; i < archive.size(); ++i) {
        QByteArray damaged = archive;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x80);
        const QByteArray bytes = kmz::UnzipBytes(damaged, "b");
        EXPECT_TRUE(bytes.isNull() || bytes == content) << i;
      }
    }
  }
}

TEST_F(ArchiveTest, ACommentMayHaveAnyLengthAndAnyText) {
  for (const int size : {1, 65513, 65514, 65535}) {
    QByteArray comment(size, 'c');
    comment.replace(size / 2, 4, "PK\5\6");
    EXPECT_EQ("1", kmz::UnzipBytes(MakeRaw({{"doc.kml", "1"}}, comment.left(size)), QString()))
        << size;
  }
}

TEST_F(ArchiveTest, AMethodThatIsNotSupportedIsNamed) {
  struct Case {
    quint16 method;
    const char* name;
  };
  for (const Case& c : {Case{9, "Deflate64 (9)"}, Case{14, "LZMA (14)"}, Case{77, "77"}}) {
    const QString error = Error(MakeRaw({{"doc.kml", "1", "", c.method}}));
    EXPECT_TRUE(error.endsWith(QString("a method that isn't supported: ") + c.name))
        << error.toStdString();
  }
}

TEST_F(ArchiveTest, DamageIsAnErrorAndNeverMore) {
  const QByteArray document = QByteArray("<kml/>").repeated(2000);
  const QByteArray archive = Pack({{"doc.kml", document}});
  EXPECT_EQ(document, kmz::UnzipBytes(archive, QString()));
  // Every byte wrong once, and every length: either the document or an error.
  for (int i = 0; i < archive.size(); ++i) {
    QByteArray damaged = archive;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x55);
    for (const QByteArray& bytes : {damaged, archive.left(i)}) {
      QString error;
      const QByteArray unpacked = kmz::UnzipBytes(bytes, QString(), &error);
      EXPECT_EQ(unpacked.isNull(), !error.isEmpty()) << i;
      EXPECT_TRUE(unpacked.isNull() || unpacked == document) << i;
    }
  }
  EXPECT_TRUE(Error("plain text").endsWith("it is no archive"));
  EXPECT_TRUE(Error(QByteArray()).endsWith("it is no archive"));

  QByteArray badChecksum = archive;
  const auto directory = badChecksum.lastIndexOf("PK\1\2");
  badChecksum[directory + 16] = static_cast<char>(badChecksum[directory + 16] + 1);
  EXPECT_TRUE(Error(badChecksum).endsWith("it is damaged"));

  QByteArray encrypted = archive;
  encrypted[directory + 8] = static_cast<char>(encrypted[directory + 8] | 1);
  EXPECT_TRUE(Error(encrypted).endsWith("it is encrypted"));
}

TEST_F(ArchiveTest, WhatUnpacksToTooMuchIsRefused) {
  const QByteArray archive = Pack({{"doc.kml", QByteArray(1000000, ' ')}});
  const std::pair<kmz::Limits, bool> cases[] = {
      {{1000000, 1, 1000000}, true}, // small enough for any ratio
      {{999999, 5000, 1000000}, false},
      {{1000000, 300, 1000}, false},
      {{1000000, 5000, 1000}, true}};
  for (const auto& [limits, allowed] : cases) {
    kmz::SetLimits(limits);
    QString error;
    EXPECT_EQ(allowed, !kmz::UnzipBytes(archive, QString(), &error).isNull());
    EXPECT_EQ(!allowed, error.contains("it is larger than the")) << error.toStdString();
  }
  // An entry that tells a smaller size than it has gets no further than that.
  kmz::SetLimits({1000, 300, 1000});
  QByteArray lie = archive;
  const auto directory = lie.lastIndexOf("PK\1\2");
  for (int i = 0; i < 4; ++i)
    lie[directory + 24 + i] = i == 0 ? 100 : 0;
  EXPECT_NE("", Error(lie));
}

TEST_F(ArchiveTest, WrittenArchivesReadBackAndAreTheSameEveryTime) {
  const QByteArray noise = Noise(600000);
  const int sizes[] = {0, 1, (1 << 18) - 1, 1 << 18, (1 << 18) + 1, 600000};
  QByteArray archives[2];
  for (QByteArray& bytes : archives) {
    QBuffer target(&bytes);
    target.open(QIODevice::WriteOnly);
    kmz::Writer writer(target);
    for (const int size : sizes) {
      QBuffer contents;
      contents.setData(noise.left(size));
      contents.open(QIODevice::ReadOnly);
      EXPECT_EQ(kmz::Writer::kAdded, writer.Add(QString("d%1.jpG").arg(size), contents));
      EXPECT_TRUE(writer.Add(QString("b%1").arg(size), noise.constData(), size));
    }
    EXPECT_TRUE(writer.Close());
  }
  EXPECT_EQ(archives[0], archives[1]);
  EXPECT_EQ(static_cast<int>(2 * std::size(sizes)), kmz::ListEntries(archives[0]).size());
  for (const int size : sizes) {
    EXPECT_EQ(noise.left(size), kmz::UnzipBytes(archives[0], QString("d%1.jpg").arg(size)));
    EXPECT_EQ(noise.left(size), kmz::UnzipBytes(archives[0], QString("b%1").arg(size)));
  }
}

TEST_F(ArchiveTest, ContentsThatEndEarlySayHowFarTheyCame) {
  struct Case {
    int size;
    qint64 good;
    kmz::Writer::Result result;
  };
  const Case cases[] = {{1000, 0, kmz::Writer::kUnreadable},
                        {1000, 999, kmz::Writer::kUnreadable},
                        {600000, 100000, kmz::Writer::kUnreadable},
                        {600000, 300000, kmz::Writer::kCutShort},
                        {600000, 1 << 19, kmz::Writer::kCutShort}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.good);
    QByteArray archive;
    QBuffer target(&archive);
    target.open(QIODevice::WriteOnly);
    kmz::Writer writer(target);
    FailingDevice contents(QIODevice::ReadOnly, c.good);
    contents.buffer() = Noise(c.size);
    EXPECT_EQ(c.result, writer.Add("a", contents));
    const bool good = c.result == kmz::Writer::kUnreadable;
    EXPECT_EQ(good, writer.Add("b", "1", 1));
    EXPECT_EQ(good, writer.Close());
    EXPECT_EQ(good ? QStringList("b") : QStringList(),
              good ? kmz::ListEntries(archive) : QStringList());
  }
}

TEST_F(ArchiveTest, AnArchiveThatLacksAnyByteIsNotComplete) {
  const QByteArray noise = Noise(3000);
  const auto write = [&noise](QIODevice& target) {
    kmz::Writer writer(target);
    writer.Add("doc.kml", noise.constData(), noise.size());
    writer.Add("a.jpg", noise.constData(), 100);
    return writer.Close();
  };
  QBuffer whole;
  whole.open(QIODevice::WriteOnly);
  ASSERT_TRUE(write(whole));
  for (qint64 room = 0; room <= whole.size(); ++room) {
    FailingDevice target(QIODevice::WriteOnly, room);
    EXPECT_EQ(room == whole.size(), write(target)) << room;
  }
}

TEST_F(ArchiveTest, MoreEntriesThanAPlainEndHasRoomForMakeALargeOne) {
  for (const int count : {65535, 65536}) {
    QByteArray bytes;
    QBuffer target(&bytes);
    target.open(QIODevice::WriteOnly);
    kmz::Writer writer(target);
    for (int i = 0; i < count; ++i)
      writer.Add(QString::number(i) + ".jpg", "1", 1);
    ASSERT_TRUE(writer.Close());
    const QString last = QString::number(count - 1) + ".jpg";
    EXPECT_EQ("1", kmz::UnzipBytes(bytes, last));

    // By the format's word, not by ours: the counts and places of all three parts of the end.
    const auto end = bytes.size() - 22;
    const auto large = end - 20 - 56;
    const bool isLarge = bytes.mid(large, 4) == "PK\6\6";
    EXPECT_EQ(count > 65535, isLarge);
    EXPECT_EQ(Bytes(0xFFFF, 2), bytes.mid(end + 10, 2));
    if (isLarge) {
      const auto directory = bytes.indexOf("PK\1\2");
      EXPECT_EQ(Bytes(static_cast<quint64>(count), 8), bytes.mid(large + 32, 8));
      EXPECT_EQ(Bytes(static_cast<quint64>(large - directory), 8), bytes.mid(large + 40, 8));
      EXPECT_EQ(Bytes(static_cast<quint64>(directory), 8), bytes.mid(large + 48, 8));
      EXPECT_EQ("PK\6\7" + Bytes(0, 4) + Bytes(static_cast<quint64>(large), 8) + Bytes(1, 4),
                bytes.mid(end - 20, 20));
    }
  }
}

TEST_F(ArchiveTest, PlacesBeyondFourGibibytesAreToldAndFound) {
  QFile file(folder_.filePath("large.kmz"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(file.seek((qint64(1) << 32) - 100)); // takes no room on the disk
  kmz::Writer writer(file);
  const QByteArray noise = Noise(2000);
  for (const char* name : {"doc.kml", "files/a.png", "files/b.jpg"})
    EXPECT_TRUE(writer.Add(name, noise.constData(), noise.size()));
  ASSERT_TRUE(writer.Close());
  file.close();
  for (const char* name : {"doc.kml", "files/a.png", "files/b.jpg"}) {
    QString error;
    EXPECT_EQ(noise, kmz::UnzipFile(file.fileName(), name, &error)) << error.toStdString();
  }
}
