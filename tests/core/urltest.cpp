#include "kestan/host/url.h"

#include "kestan/host/system.h"
#include "kestan/host/versioninfo.h"
#include "tests/support/kmltest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <thread>

namespace vorrel::kestan {

using UrlTest = KmlTest;

TEST_F(UrlTest, TypesFollowFromTheForm) {
  const std::tuple<const char*, UrlType, bool> cases[] = {
      {"", kUrlRoot, false},
      {"#id", kUrlFragment, false},
      {"http://h/p", kUrlNetwork, true},
      {"HTTPS://h/p", kUrlNetwork, true},
      {"http://h/flatfile?x", kUrlFlatfile, true},
      {"http://h/FLATFILE?x", kUrlNetwork, true},
      {"c:/dir", kUrlLocal, true},
      {"c:\\dir", kUrlLocal, true},
      {"/dir/flatfile?x", kUrlLocal, true},
      {"\\\\server\\share", kUrlLocal, true},
      {"\\dir", kUrlRelative, false},
      {":/resource", kUrlLocal, true},
      {":resource", kUrlRelative, false},
      {"Root://styles", kUrlRoot, true},
      {"flatfile://x", kUrlFlatfile, true},
      {"ftp://h/p", kUrlLocal, true},
      {" \t mailto:x", kUrlLocal, true},
      {"x+y-z.1:p", kUrlLocal, true},
      {"1:word", kUrlRelative, false},
      {"  ", kUrlRelative, false},
      {"a", kUrlRelative, false},
      {"a:", kUrlLocal, true},
      {"\xC3\xA4:word", kUrlRelative, false},
  };
  for (const auto& [url, type, absolute] : cases) {
    SCOPED_TRACE(url);
    EXPECT_EQ(type, GGetUrlType(QString::fromUtf8(url)));
    EXPECT_EQ(absolute, GIsUrlAbsolute(QString::fromUtf8(url)));
  }
}

TEST_F(UrlTest, ARootedPathIsLocalOnlyUnderALocalBase) {
  for (const char* base : {"", "/dir/doc.kml", "C:\\dir\\doc.kml", "file:///dir/doc.kml",
                           "\\\\server\\doc.kml", "//server/doc.kml"})
    EXPECT_EQ(kUrlLocal, GetRelativeUrlType("/p", base)) << base;
  for (const char* base : {"HTTPS://h/doc.kml", "ftp://h/doc.kml", "root://a", "c:a", "a/b"})
    EXPECT_EQ(kUrlRelative, GetRelativeUrlType("/p", base)) << base;
  EXPECT_EQ(kUrlLocal, GetRelativeUrlType("//server/p", "http://h/doc.kml"));
  EXPECT_EQ(kUrlLocal, GetRelativeUrlType("/", "http://h/doc.kml"));
  EXPECT_EQ(kUrlFragment, GetRelativeUrlType("#p", "/dir/doc.kml"));
}

TEST_F(UrlTest, UrlsAreMadeAbsolute) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"http://h/a/doc.kml", "b.png", "http://h/a/b.png"},
      {"http://h/a/doc.kml", "../b.png", "http://h/b.png"},
      {"http://h/a/doc.kml", "#id", "http://h/a/doc.kml#id"},
      {"http://h/a/doc.kml", "http://other/b.png", "http://other/b.png"},
      {"http://h/a/doc.kml", "data:image/png;base64,//8=", "data:image/png;base64,//8="},
      {"http://h/a/q.php?x=1/2", "b.png", "http://h/a/b.png"},
      {"http://h/a/b.kmz", "files/c.png", "http://h/a/b.kmz/files/c.png"},
      {"http://h/a/b.kmz/doc.kml", "files/c.png", "http://h/a/b.kmz/files/c.png"},
      {"http://h/a/b.kmz", "../c.png", "http://h/a/c.png"},
      {"http://h/a/b.kmz", "#id", "http://h/a/b.kmz#id"},
      {"http://h", "b.png", "http://h/b.png"},
      {"http://h?q=1/2", "b.png", "http://h/b.png"},
      {"http://h#f", "b.png", "http://h/b.png"},
      {"http://h.kml", "b.kmz/c.png", "http://h.kml/b.kmz/c.png"},
      {"http://h\\a", "b.png", "http://h/b.png"},
      {"ftp://h", "b.png", "ftp://h/b.png"},
      {"http://h", "#id", "http://h#id"},
      {"root://styles", "b.png", "root://b.png"},
      {"http://h/a//doc.kml", "b//c.png", "http://h/a//b//c.png"},
      {"/dir//doc.kml", "b//c.png", "/dir/b/c.png"},
      {"/none/dir?1/doc.kml", "b.png", "/none/b.png"}, // there's no such folder
      {"/dir/doc.kml", "/etc/b.png", "/etc/b.png"},
      {"C:\\dir\\doc.kml", "b.png", "C:/dir/b.png"},
      {"doc.kml", "b.png", "b.png"},
      {"http://h/a/doc.kml", "", ""},
      {"", "", ""},
  };
  for (const auto& [base, url, absolute] : cases) {
    SCOPED_TRACE(std::string(base) + " + " + url);
    EXPECT_EQ(absolute, SchemaObject::MakeAbsoluteUrl(base, url));
    EXPECT_EQ(absolute, SchemaObject::MakeAbsoluteUrl(base, url)) << "the kept answer";
  }
  EXPECT_TRUE(SchemaObject::MakeAbsoluteUrl("", "b.png").isNull());
}

TEST_F(UrlTest, ThreadsThatBuildNothingMayAsk) {
  QString url;
  KmlId id;
  std::thread([&] {
    url = SchemaObject::MakeAbsoluteUrl("http://h/a/doc.kml", "b.png");
    id = SchemaObject::MakeAbsoluteId("http://h/a/doc.kml", "c.kml#x");
  }).join();
  EXPECT_EQ("http://h/a/b.png", url);
  EXPECT_EQ(KmlId("x", "http://h/a/c.kml"), id);
}

TEST_F(UrlTest, ALocalArchiveCountsAsADirectoryWhenItExists) {
  const QTemporaryDir dir;
  const QString kmz = dir.filePath("b.kmz");
  EXPECT_EQ(dir.filePath("c.png"), SchemaObject::MakeAbsoluteUrl(kmz, "c.png"));
  QFile file(kmz);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_EQ(kmz + "/d.png", SchemaObject::MakeAbsoluteUrl(kmz, "d.png"));
}

TEST_F(UrlTest, FilesMayHaveInTheirNamesWhatBeginsAQueryOrFragment) {
  const QTemporaryDir dir;
  const auto make = [&dir](const QString& name) {
    QDir(dir.path()).mkpath(QFileInfo(name).path());
    QFile file(dir.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  };
  struct Case {
    const char* base;
    const char* url;
    const char* absolute;
  };
  const Case cases[] = {
      {"C#/doc.kml", "a.png", "C#/a.png"},
      {"C#/doc.kml", "../a.png", "a.png"},
      {"what?/doc.kml", "a.png", "what?/a.png"},
      {"what?/doc.kml", "../a?b#c", "a?b#c"},
      {"what?/doc.kml", "a.png?v=../1", "what?/a.png?v=../1"},
      {"50%/doc.kml", "a%20b.png", "50%/a%20b.png"},
      {"n#1.kmz", "a.png", "n#1.kmz/a.png"},
      {"q?1.kmz", "files/a.png", "q?1.kmz/files/a.png"},
      {"doc.kml", "q?1.kmz/a#1.png", "q?1.kmz/a#1.png"},
      {"doc.kml?x=1/2", "a.png", "a.png"},
  };
  for (const char* name : {"C#/doc.kml", "what?/doc.kml", "50%/doc.kml", "n#1.kmz", "q?1.kmz"})
    make(name);
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.base) + " + " + c.url);
    EXPECT_EQ(dir.filePath(c.absolute),
              SchemaObject::MakeAbsoluteUrl(dir.filePath(c.base), QString::fromUtf8(c.url)));
  }
  // The id is behind the "#" that belongs to no name; without a file, behind the first one.
  const QString base = dir.filePath("doc.kml");
  const auto id = [&base](const char* text) { return SchemaObject::MakeAbsoluteId(base, text); };
  EXPECT_EQ(KmlId("s", dir.filePath("C#/doc.kml")), id("C#/doc.kml#s"));
  EXPECT_EQ(KmlId("s", dir.filePath("C#/new.kml")), id("C#/new.kml#s"));
  EXPECT_EQ(KmlId("s#t", dir.filePath("new.kml")), id("new.kml#s#t"));
  EXPECT_EQ(KmlId("s", dir.filePath("C#/new.kml")),
            SchemaObject::MakeAbsoluteId(dir.filePath("C#/doc.kml"), "new.kml#s"));
  EXPECT_EQ(KmlId("s", dir.filePath("C#/doc.kml")),
            SchemaObject::MakeAbsoluteId("http://h/a.kml", dir.filePath("C#/doc.kml") + "#s"));
  EXPECT_EQ(KmlId("s", "/none/C#/other.kml"),
            SchemaObject::MakeAbsoluteId("/none/C#/doc.kml", "other.kml#s"));
}

TEST_F(UrlTest, AClientCanKeepDocumentsInItsOwnFolders) {
  VersionInfo::Options options;
  options.allowLocalFilesOutsideInstallation = false;
  VersionInfo::SetOptions(options);
  const QString installed = System::GetInstallPath();
  System::SetInstallPath("/opt/Client");
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"/home/doc.kml", "a.png", ""},
      {"/opt/client/doc.kml", "../../etc/b.png", ""},
      {"/opt/client2/doc.kml", "c.png", ""},
      {"http://h/doc.kml", "file:///etc/d.png", ""},
      {"http://h/doc.kml", " file:///etc/d.png", ""},
      {"doc.kml", "../etc/b.png", ""},
      {"", "/opt/client/c#/../../../etc/b.png", ""},
      {"doc.kml", "a/../b.png", "b.png"},
      {"/opt/client/doc.kml", "e.png", "/opt/client/e.png"},
      {"http://h/doc.kml", "f.png", "http://h/f.png"}};
  for (const auto& [base, url, absolute] : cases)
    EXPECT_EQ(absolute, SchemaObject::MakeAbsoluteUrl(base, url)) << base << ' ' << url;
  System::SetInstallPath(installed);
  VersionInfo::SetOptions(VersionInfo::Options());
}

TEST_F(UrlTest, IdsAreSplitAndMadeAbsolute) {
  struct Case {
    const char* base;
    const char* id;
    const char* url;
    const char* name;
  };
  const Case cases[] = {
      {"http://h/a.kml", "#x", "http://h/a.kml", "x"},
      {"http://h/a.kml", "b.kml#x", "http://h/b.kml", "x"},
      {"http://h/a.kml", "http://other/c.kml#x", "http://other/c.kml", "x"},
      {"http://h/a.kml", "root://styles#x", "root://styles", "x"},
      {"http://h/a.kml", "http://other/c.kml", "http://other/c.kml", ""},
      {"", "#x", "", "x"},
      {"", "b.kml#x#y", "b.kml", "x#y"},
      {"", "", "", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.base) + " + " + c.id);
    const KmlId id = SchemaObject::MakeAbsoluteId(c.base, c.id);
    EXPECT_EQ(c.url, id.url);
    EXPECT_EQ(c.name, id.id);
    EXPECT_EQ(id, SchemaObject::MakeAbsoluteId(c.base, c.id)) << "the kept answer";
  }
}

TEST_F(UrlTest, RuntimeUrlsTakeThePlaceOfBuiltInOnes) {
  EXPECT_EQ("runtime://a/b", SchemaObject::MakeRuntimeUrl("ROOT://a/b"));
  EXPECT_EQ("http://root://", SchemaObject::MakeRuntimeUrl("http://root://"));
  EXPECT_EQ("", SchemaObject::MakeRuntimeUrl(""));
}

TEST_F(UrlTest, PermanentIdsAreUniqueInTheirDocument) {
  const auto assign = [](const char* stem, const QString& url) {
    RefPtr<Point> point(new Point(KmlId(QString(), url), ""));
    point->AssignPermanentUniqueId(QString::fromUtf8(stem));
    EXPECT_EQ(point.get(), SchemaObject::find(point->GetKmlId()));
    return point;
  };
  const auto a = assign("my stem!", "http://h/a.kml");
  const auto b = assign("mystem", "http://h/a.kml");
  const auto c = assign("my-stem", "http://h/a.kml");
  const auto other = assign("mystem", "http://h/b.kml");
  const auto none = assign("- !", "http://h/a.kml");
  const auto foreign = assign("\xC3\xA9t\xC3\xA9 1", "http://h/a.kml");
  EXPECT_EQ("mystem", a->GetId());
  EXPECT_EQ("mystem_0", b->GetId());
  EXPECT_EQ("mystem_1", c->GetId());
  EXPECT_EQ("mystem", other->GetId());
  EXPECT_EQ("_0", none->GetId());
  EXPECT_EQ(QString::fromUtf8("\xC3\xA9t\xC3\xA9"
                              "1"),
            foreign->GetId());
  a->AssignPermanentUniqueId("other");
  EXPECT_EQ("mystem", a->GetId());
}

} // namespace vorrel::kestan
