#include "kestan/host/kmz.h"
#include "kestan/host/net.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <minizip/zip.h>

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

} // namespace

TEST_F(ArchiveTest, TheDocumentIsFoundUnderAnyOfItsNames) {
  struct Case {
    Entries entries;
    const char* content;
  };
  const Case cases[] = {
      {{{"first.kml", "1"}, {"doc.kml", "2"}}, "2"},
      {{{"first.kml", "1"}, {"DOC.KML", "2"}}, "2"},
      {{{"first.kml", "1"}, {"./doc.kml", "2"}}, "2"},
      {{{"first.kml", "1"}, {"/doc.kml", "2"}}, "2"},
      {{{"first.kml", "1"}, {".\\Doc.kml", "2"}}, "2"},
      {{{"image.png", "0"}, {"first.KML", "1"}, {"second.kml", "2"}}, "1"},
      {{{"dir/doc.kml", "1"}, {"second.kml", "2"}}, "1"},
      {{{"doc.kml", ""}}, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.entries.back().first.constData());
    const QByteArray archive = Pack(c.entries);
    EXPECT_TRUE(kmz::IsKmzData(archive.constData(), static_cast<std::size_t>(archive.size())));
    QString error = "not cleared";
    const QByteArray bytes = kmz::UnzipBytes(archive, QString(), &error);
    EXPECT_EQ(c.content, bytes);
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
  const int directory = badChecksum.lastIndexOf("PK\1\2");
  badChecksum[directory + 16] = static_cast<char>(badChecksum[directory + 16] + 1);
  EXPECT_TRUE(Error(badChecksum).endsWith("it is damaged"));

  QByteArray encrypted = archive;
  encrypted[directory + 8] = static_cast<char>(encrypted[directory + 8] | 1);
  EXPECT_TRUE(Error(encrypted).endsWith("it is encrypted"));
}

TEST_F(ArchiveTest, WhatUnpacksToTooMuchIsRefused) {
  const QByteArray archive = Pack({{"doc.kml", QByteArray(1000000, ' ')}});
  struct Case {
    kmz::Limits limits;
    bool allowed;
  };
  const Case cases[] = {{{1000000, 1, 1000000}, true}, // small enough for any ratio
                        {{999999, 5000, 1000000}, false},
                        {{1000000, 300, 1000}, false},
                        {{1000000, 5000, 1000}, true}};
  for (const Case& c : cases) {
    kmz::SetLimits(c.limits);
    QString error;
    EXPECT_EQ(c.allowed, !kmz::UnzipBytes(archive, QString(), &error).isNull());
    EXPECT_EQ(!c.allowed, error.contains("it is larger than the")) << error.toStdString();
  }
  // An entry that tells a smaller size than it has gets no further than that.
  kmz::SetLimits({1000, 300, 1000});
  QByteArray lie = archive;
  const int directory = lie.lastIndexOf("PK\1\2");
  for (int i = 0; i < 4; ++i)
    lie[directory + 24 + i] = i == 0 ? 100 : 0;
  EXPECT_NE("", Error(lie));
}
