#include "kestan/host/path.h"

#include "kestan/host/net.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace vorrel;

TEST(CleanupPathnameTest, RewritesThePathAndNothingElse) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"a\\b\\..\\c.kml", "a/c.kml"},
      {"/a//b/./c/../d.kml", "/a/b/d.kml"},
      {"/../a.kml", "/a.kml"},
      {"../../a.kml", "../../a.kml"},
      {"a/../../b", "../b"},
      {"./", "./"},
      {".", "./"},
      {"a/..", "./"},
      {"a/b/..", "a/"},
      {"a/b/.", "a/b/"},
      {"a/.hidden/..x/y...", "a/.hidden/..x/y..."},
      {"C:\\a\\..\\..\\b", "C:/b"},
      {"%:/../b", "%:/b"},
      {"\\\\server\\share\\..\\x", "//server/x"},
      {"//server/a//b", "//server/a/b"},
      {"http://host/a/../b//c?q=x/../y//z\\w#f/./g", "http://host/b//c?q=x/../y//z\\w#f/./g"},
      {"HTTP:\\\\host\\a", "HTTP://host/a"},
      {"http://host//a//", "http://host//a//"},
      {"https://host//a//../b", "https://host//a/b"},
      {"http://host//..", "http://host/"},
      {"ftp://host//a", "ftp://host/a"},
      {"http://host?u=http://x//y", "http://host?u=http://x//y"},
      {"root://styles#pin", "root://styles#pin"},
      {"runtime://clone12", "runtime://clone12"},
      {"data:image/png;base64,a//b/../c", "data:image/png;base64,a//b/../c"},
      {"#frag/../x", "#frag/../x"},
      {":/../root://a://b/", "root://a:/b/"},
      {"a/b.kmz/../c#x", "a/c#x"}};
  for (const auto& [given, clean] : cases) {
    SCOPED_TRACE(given);
    QString path(given);
    file::CleanupPathname(path);
    EXPECT_EQ(clean, path.toStdString());
    file::CleanupPathname(path);
    EXPECT_EQ(clean, path.toStdString());
  }
}

TEST(NetTest, FindsFilesInsideArchives) {
  const QTemporaryDir folder;
  const QString archive = folder.filePath("A b.KMZ");
  QFile(archive).open(QIODevice::WriteOnly);
  QDir(folder.path()).mkdir("dir.kmz");
  QFile(folder.filePath("dir.kmz/in.kmz")).open(QIODevice::WriteOnly);

  QString kmz;
  QString inner;
  EXPECT_TRUE(net::Fetcher::FindInKmz(archive + "/files/x.png?q#f", &kmz, &inner));
  EXPECT_EQ(archive, kmz);
  EXPECT_EQ("files/x.png", inner);
  EXPECT_TRUE(net::Fetcher::FindInKmz(
      QUrl::fromLocalFile(archive).toString(QUrl::FullyEncoded) + "/x.png", &kmz, &inner));
  EXPECT_EQ(archive, kmz);
  EXPECT_TRUE(net::Fetcher::FindInKmz("HTTPS://host/a.kmz/b.kml", &kmz, &inner));
  EXPECT_EQ("HTTPS://host/a.kmz", kmz);
  EXPECT_TRUE(net::Fetcher::FindInKmz(QString(archive).replace("A b", "A%20b") + "/x%20y.png", &kmz,
                                      &inner));
  EXPECT_EQ(archive, kmz);
  EXPECT_TRUE(net::Fetcher::FindInKmz(folder.filePath("dir.kmz/in.kmz/y"), &kmz, &inner));
  EXPECT_EQ(folder.filePath("dir.kmz/in.kmz"), kmz);
  EXPECT_TRUE(net::Fetcher::FindInKmz("http://host/a.kmz/b.kml?q", &kmz, &inner));
  EXPECT_EQ("http://host/a.kmz", kmz);
  EXPECT_EQ("b.kml", inner);
  for (const QString& other :
       {archive, archive + "/", folder.filePath("none.kmz/x"), folder.filePath("dir.kmz/x"),
        QString("http://host/a.kmz"), QString("http://host/a?u=b.kmz/c"), QString()}) {
    EXPECT_FALSE(net::Fetcher::FindInKmz(other, &kmz, &inner)) << other.toStdString();
    EXPECT_TRUE(kmz.isEmpty() && inner.isEmpty());
  }
}

TEST(NetTest, LooksForArchivesAtNoCostOutOfProportion) {
  QString kmz;
  QString inner;
  // Each of its parts might be an archive. Asking for all of them takes minutes.
  EXPECT_FALSE(net::Fetcher::FindInKmz(QString("a.kmz/").repeated(300000), &kmz, &inner));
}
