#include "kestan/read/kmlhandler.h"
#include "kestan/write/writestate.h"
#include "tests/support/xml.h"
#include "tests/write/filetest.h"

namespace vorrel::kestan {

class DestinationTest : public FileTest {
protected:
  RefPtr<Placemark> Make() { return Read<Placemark>("<Placemark><name>n</name></Placemark>"); }
};

TEST_F(DestinationTest, FilesHoldTheSameTextAsStringsAndReplaceOldOnes) {
  MakeFile("a.kml", QByteArray(100000, 'x'));
  const std::pair<const char*, const char*> cases[] = {
      {"a.kml", "a.kml"}, {"b", "b.kml"}, {"c.txt", "c.txt"}, {"d.KML", "d.KML"}};
  for (const auto& [name, file] : cases) {
    SCOPED_TRACE(name);
    EXPECT_EQ(QString(), Make()->WriteKmlFile(Path(name)));
    EXPECT_EQ(Write(*Make()).toUtf8(), Contents(Path(file)));
  }
  EXPECT_EQ(4, Files().size());
}

TEST_F(DestinationTest, RefusedWritesSayWhyAndLeaveNothing) {
  ASSERT_TRUE(QDir(folder_.path()).mkdir("folder.kml"));
  const std::pair<QString, const char*> cases[] = {
      {"", "Empty filename for writing kml"},
      {Path("missing/a.kml"), "Could not open file for writing."},
      {Path("folder.kml"), "Could not open file for writing."},
      {folder_.path(), "Could not open file for writing."},
      {Path("folder.kml/"), "Could not open file for writing."},
  };
  for (const auto& [path, message] : cases) {
    SCOPED_TRACE(path.toStdString());
    EXPECT_EQ(QString(message), Make()->WriteKmlFile(path));
  }
  EXPECT_EQ(QStringList("folder.kml"), Files());
}

TEST_F(DestinationTest, AnErrorInTheMiddleKeepsTheOldFile) {
  MakeFile("a.kml", "old");
  for (const char* name : {"a.kml", "new.kml"}) {
    WriteState state(Path(name), QString(), false);
    EXPECT_EQ(QString(), state.error());
    Make()->WriteKml(state);
    state.SetError("first");
    state.SetError("second");
    state.Finish();
    EXPECT_EQ("first", state.error());
  }
  EXPECT_EQ("old", Contents(Path("a.kml")));
  EXPECT_EQ(QStringList("a.kml"), Files());

  QByteArray bytes("old");
  {
    WriteState state(bytes, QString());
    state.SetError("no");
  }
  EXPECT_EQ("old", bytes);
}

TEST_F(DestinationTest, AFullDeviceIsReported) {
  if (!QFile::exists("/dev/full"))
    GTEST_SKIP() << "no device to fill";
  EXPECT_EQ("Could not write file.", Make()->WriteKmlFile("/dev/full"));
  EXPECT_EQ(QString(), Make()->WriteKmlFile("/dev/null"));
}

TEST_F(DestinationTest, EveryNameThatAFileMayHaveIsWritten) {
  const QString longest(251, QLatin1Char('n'));
  for (const QString& name : {longest + ".kml", longest + ".kmz"}) {
    for (int i = 0; i < 2; ++i)
      EXPECT_EQ(QString(), Make()->WriteKmlFile(folder_.filePath(name))) << name.toStdString();
    EXPECT_NE(0, QFileInfo(folder_.filePath(name)).size());
  }
  EXPECT_EQ(2, Files().size());

  QTemporaryDir memory("/dev/shm/XXXXXX");
  if (!memory.isValid())
    return;
  EXPECT_EQ(QString(), Make()->WriteKmlFile(memory.filePath("a.kmz")));
  EXPECT_EQ(QString(), Make()->WriteKmlFile(memory.filePath("b")));
  EXPECT_EQ(QStringList({"a.kmz", "b.kml"}), QDir(memory.path()).entryList(QDir::Files));
}

TEST_F(DestinationTest, ATreeThatNobodyCouldReadIsRefused) {
  struct Case {
    int levels;
    const char* error;
  };
  for (const Case& c : {Case{999, ""},
                        {1000, "Too many levels of objects."},
                        {5000, "Too many levels of objects."}}) {
    RefPtr<Folder> outermost = Read<Folder>("<Folder/>");
    for (int i = 1; i < c.levels; ++i) {
      const auto around = Read<Folder>("<Folder/>");
      around->AddChild(*outermost);
      outermost = around;
    }
    QByteArray bytes("old");
    EXPECT_EQ(c.error, outermost->WriteKmlString(bytes)) << c.levels;
    EXPECT_EQ(*c.error == '\0', !!ReadObject(bytes)) << c.levels;
  }
}

TEST_F(DestinationTest, TheRootCarriesTheHint) {
  QByteArray bytes;
  EXPECT_EQ(QString(), WriteState::WriteString(*Make(), bytes, "target=\"a\"&<b>%1", true));
  EXPECT_TRUE(bytes.contains(" hint=\"target=&quot;a&quot;&amp;&lt;b&gt;%1\">\n<Placemark>"))
      << bytes.constData();
  EXPECT_EQ(QString(), FindXmlError(bytes));
  EXPECT_FALSE(Write(*Make()).contains("hint"));
}

TEST_F(DestinationTest, UrlsAreRelativeToTheFileUnlessTheyKeepTheirText) {
  const QString base = folder_.path() + "/";
  struct Case {
    bool keep;
    QString url;
    QString absolute;
    QString written;
  };
  const Case cases[] = {
      {false, "x", "", "x"}, // nothing better is known
      {false, "", "http://a/b", ""},
      {false, "b.png", base + "sub/b.png", "sub/b.png"},
      {false, "b.png", base.toUpper() + "b.png", base.toUpper() + "b.png"}, // isn't there
      {false, "b.png", "/elsewhere/b.png", "/elsewhere/b.png"},
      {false, "b.png", "http://a/b.png", "http://a/b.png"},
      {true, "b.png", "/elsewhere/b.png", "b.png"},
      // A reader drops the blanks around a text.
      {false, "./ b.png", base + " b.png", base + " b.png"},
      {false, ":/../ c:", " c:", ":/../ c:"},
  };
  for (const Case& c : cases) {
    WriteState state(Path("a.kml"), QString(), c.keep);
    EXPECT_EQ(c.written, state.RegisterUrl(c.url, c.absolute, true));
  }
  QByteArray bytes;
  WriteState state(bytes, QString());
  EXPECT_EQ(base + "b.png", state.RegisterUrl("b.png", base + "b.png", true));
}

TEST_F(DestinationTest, FoldersThatDifferInCaseAreOneOnlyWhereTheyLeadToOne) {
  for (const char* name : {"Data", "data"})
    ASSERT_TRUE(QDir(folder_.path()).mkdir(name));
  ASSERT_TRUE(QFile::link(Path("Data"), Path("DATA")));
  MakeFile("Data/doc.kml", "<kml><Placemark><Style><IconStyle><Icon><href>a.png</href></Icon>"
                           "</IconStyle></Style></Placemark></kml>");
  KmlHandler handler(Path("Data/doc.kml"), 2, nullptr, nullptr, nullptr);
  const RefPtr<SchemaObject> tree = ExpatHandler::LoadXml(handler, nullptr, 0);
  ASSERT_TRUE(tree);
  const std::pair<const char*, QString> cases[] = {
      {"Data/out.kml", "a.png"}, {"data/out.kml", Path("Data/a.png")}, {"DATA/out.kml", "a.png"}};
  for (const auto& [out, href] : cases) {
    EXPECT_EQ(QString(), tree->WriteKmlFile(Path(out)));
    EXPECT_EQ("<href>" + href + "</href>", Element(QString::fromUtf8(Contents(Path(out))), "href"))
        << out;
  }
}

TEST_F(DestinationTest, ReferencesMeanTheSameWhereverTheyCameFromAndGo) {
  const QString text = "<Document><Placemark><description><![CDATA[<img src='b.png'>]]>"
                       "</description><styleUrl>c.kml#s</styleUrl><Style><IconStyle><Icon>"
                       "<href>a.png</href></Icon></IconStyle></Style></Placemark></Document>";
  const auto load = [&](const char* name) {
    return RefPtr<Document>(static_cast<Document*>(ReadAt(Path(name), text).get()));
  };
  const auto document = load("doc.kml");
  const auto other = load("sub/doc.kml");
  document->AddChild(*other->GetChild(0));
  struct Case {
    QString name;
    QStringList folders; // of what the two features refer to
  };
  QDir(folder_.path()).mkdir("out");
  const Case cases[] = {{"doc.kml", {"", "sub/"}},
                        {"renamed.kml", {"", "sub/"}},
                        {"out/doc.kml", {folder_.path() + "/", folder_.path() + "/sub/"}}};
  for (const Case& c : cases) {
    ASSERT_EQ(QString(), document->WriteKmlFile(folder_.filePath(c.name)));
    const QString xml = QString::fromUtf8(Contents(folder_.filePath(c.name)));
    for (const QString& folder : c.folders) {
      for (const QString reference : {"<href>%1a.png", "src='%1b.png", "<styleUrl>%1c.kml#s"})
        EXPECT_EQ(1, xml.count(reference.arg(folder))) << xml.toStdString();
    }
  }
}

} // namespace vorrel::kestan
