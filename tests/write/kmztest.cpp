// Archives: what is packed under which name, seen with the project's reader and with minizip.

#include "kestan/host/kmz.h"
#include "kestan/link/link.h"
#include "kestan/read/kmlhandler.h"
#include "kestan/write/writestate.h"
#include "tests/support/treecompare.h"
#include "tests/write/filetest.h"

#include <minizip/unzip.h>
#include <minizip/zip.h>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

namespace vorrel::kestan {

class KmzTest : public FileTest {
protected:
  /// A document with an image for each reference.
  static QByteArray DocumentWith(const QStringList& references) {
    QString text;
    for (const QString& reference : references)
      text += QStringLiteral("<Placemark><Style><IconStyle><Icon><href>%1</href></Icon>"
                             "</IconStyle></Style></Placemark>")
                  .arg(reference.toHtmlEscaped());
    return "<kml><Document>" + text.toUtf8() + "</Document></kml>";
  }
  static RefPtr<SchemaObject> Load(const QString& path) {
    KmlHandler handler(path, 2, nullptr, nullptr, nullptr);
    const RefPtr<SchemaObject> object = ExpatHandler::LoadXml(handler, nullptr, 0);
    EXPECT_TRUE(object) << handler.GetErrorText().toStdString();
    return object;
  }
  /// The references of a packed document, in its order.
  static QStringList References(const QString& archive) {
    QStringList result;
    const QString text = QString::fromUtf8(kmz::UnzipFile(archive, QString()));
    for (const QString& part : text.split(QStringLiteral("<href>")).mid(1))
      result += part.section(QStringLiteral("</href>"), 0, 0)
                    .replace(QLatin1String("&amp;"), QLatin1String("&"))
                    .replace(QLatin1String("&apos;"), QLatin1String("'"));
    return result;
  }
  /// Makes an archive as other programs do: with a folder's own names, and without any mark.
  void Pack(const QString& name,
            const std::vector<std::pair<const char*, QByteArray>>& entries) const {
    const zipFile zip = zipOpen64(QFile::encodeName(Path(name)).constData(), APPEND_STATUS_CREATE);
    for (const auto& [entry, contents] : entries) {
      zipOpenNewFileInZip(zip, entry, nullptr, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED, 9);
      zipWriteInFileInZip(zip, contents.constData(), static_cast<unsigned>(contents.size()));
      zipCloseFileInZip(zip);
    }
    zipClose(zip, nullptr);
  }
};

TEST_F(KmzTest, ReferencesLeadToCopiesOrStayWhatTheyAre) {
  const QString name200(200, QLatin1Char('n'));
  const QString wide(80, QChar(0x20AC)); // of 240 bytes
  struct Case {
    QString reference;
    QString file; // that is there; none when empty
    QString written;
  };
  const Case cases[] = {
      {"a/x.png", "a/x.png", "files/x.png"},
      {"b/x.png", "b/x.png", "files/x_01.png"},
      {"X.PNG", "X.PNG", "files/X_02.PNG"}, // no two names that differ only in case
      {"./a/../a/x.png", "", "files/x.png"},
      {Path("a/x.png"), "", "files/x.png"},
      {"file://" + Path("a/x.png"), "", "files/x.png"},
      {"c/x_01.png", "c/x_01.png", "files/x_01_01.png"},
      {"doc.kml", "doc.kml", "files/doc.kml"}, // the document itself
      {"two words.png", "two words.png", "files/two words.png"},
      {"two%20words.png", "", "files/two words.png"},
      {QString::fromUtf8("f/\xC3\xBC\xF0\x9F\x8C\x8D.png"),
       QString::fromUtf8("f/\xC3\xBC\xF0\x9F\x8C\x8D.png"),
       QString::fromUtf8("files/\xC3\xBC\xF0\x9F\x8C\x8D.png")},
      {"it's<b>&\"100%\"#1.png", "it's<b>&\"100%\"#1.png", "files/it_s_b___100___1.png"},
      {"...", "...", "files/file"},
      {"no suffix", "no suffix", "files/no suffix"},
      {name200 + "1.png", name200 + "1.png", "files/" + name200.left(196) + ".png"},
      {wide + ".png", wide + ".png", "files/" + wide.left(65) + ".png"},
      {"a/empty.png", "a/empty.png", "files/empty.png"},
      // What isn't there, or is no file, stays outside.
      {"a/missing.png", "", "../a/missing.png"},
      {"a", "", "../a"},
      {"../../../../../../../../none/x.png", "", "/none/x.png"},
      {"pipe.png", "", "../pipe.png"},
      {"out.kmz", "", "../out.kmz"},
      {"no.kmz/x.png", "", "../no.kmz/x.png"},
      {"http://example.com/x.png", "", "http://example.com/x.png"},
      {"ftp://example.com/x.png", "", "ftp://example.com/x.png"},
      {"data:image/png;base64,AA/BB", "", "data:image/png;base64,AA/BB"},
  };
  QStringList references;
  for (const Case& c : cases) {
    references += c.reference;
    if (!c.file.isEmpty() && c.file != "doc.kml")
      MakeFile(c.file, c.file == "a/empty.png" ? QByteArray() : c.file.toUtf8());
  }
  ASSERT_EQ(0, ::mkfifo(QFile::encodeName(Path("pipe.png")).constData(), 0600));
  const RefPtr<SchemaObject> tree = Load(MakeFile("doc.kml", DocumentWith(references)));

  QStringList unreadable;
  ASSERT_EQ(QString(), tree->WriteKmlFile(Path("out.kmz"), 0, &unreadable));
  const QStringList written = References(Path("out.kmz"));
  ASSERT_EQ(static_cast<int>(std::size(cases)), written.size());
  for (int i = 0; i < written.size(); ++i) {
    EXPECT_EQ(cases[i].written, written[i]) << cases[i].reference.toStdString();
    if (!cases[i].file.isEmpty()) {
      EXPECT_EQ(Contents(Path(cases[i].file)), kmz::UnzipFile(Path("out.kmz"), written[i]));
    }
  }
  EXPECT_EQ(QStringList({Path("a/missing.png"), Path("a"), "/none/x.png", Path("pipe.png"),
                         Path("no.kmz/x.png")}),
            unreadable);
  const RefPtr<SchemaObject> copy = Load(Path("out.kmz"));
  EXPECT_EQ(QString(), FindDifference(*tree, *copy));

  // Again, over the old archive, and from what is in it.
  const QByteArray first = Contents(Path("out.kmz"));
  EXPECT_EQ(QString(), tree->WriteKmlFile(Path("out.kmz")));
  EXPECT_EQ(first, Contents(Path("out.kmz")));
  EXPECT_EQ(QString(), copy->WriteKmlFile(Path("out.kmz")));
  EXPECT_EQ(first, Contents(Path("out.kmz")));
}

TEST_F(KmzTest, AModelTravelsWithTheFilesThatItNames) {
  for (const char* name : {"models/house.dae", "models/a.png", "tex/b.png", "tex/two words.png"})
    MakeFile(name, name);
  MakeFile("tex/c.png", "of the document");
  MakeFile("models/tex/c.png", "of the model");
  struct Case {
    QString target; // %1: the folder
    QString packed;
    QByteArray contents;
  };
  const Case cases[] = {
      {"a.png", "a.png", "models/a.png"},
      {"../models/a.png", "a.png", "models/a.png"},
      {"../tex/two%20words.png", "two words.png", "tex/two words.png"},
      {"tex/b.png", "b.png", "tex/b.png"}, // from the document, where the model has none
      {"tex/c.png", "c.png", "of the model"},
      {"%1/tex/c.png", "c_01.png", "of the document"},
      {"none.png", "../../models/none.png", ""},
      {"http://example.com/t.png", "http://example.com/t.png", ""},
  };
  QString aliases;
  for (const Case& c : cases)
    aliases +=
        QString("<Alias><targetHref>%1</targetHref><sourceHref>s</sourceHref></Alias>")
            .arg(c.target.contains('%') && !c.target.contains("%20") ? c.target.arg(folder_.path())
                                                                     : c.target);
  const QString text = "<kml><Placemark><Model><Link><href>models/house.dae</href></Link>%1"
                       "</Model></Placemark></kml>";
  const auto tree =
      Load(MakeFile("doc.kml", text.arg("<ResourceMap>" + aliases + "</ResourceMap>").toUtf8()));
  QStringList unreadable;
  ASSERT_EQ(QString(), tree->WriteKmlFile(Path("out.kmz"), 0, &unreadable));
  EXPECT_EQ(QStringList(Path("models/none.png")), unreadable);
  EXPECT_EQ(QStringList("files/house.dae"), References(Path("out.kmz")));
  const auto targets = [](const QString& document) {
    QStringList result;
    for (const QString& part : document.split("<targetHref>").mid(1))
      result += part.section("</targetHref>", 0, 0);
    return result;
  };
  const QStringList packed = targets(kmz::UnzipFile(Path("out.kmz"), QString()));
  ASSERT_EQ(static_cast<int>(std::size(cases)), packed.size());
  for (int i = 0; i < packed.size(); ++i) {
    EXPECT_EQ(cases[i].packed, packed[i]);
    if (!cases[i].contents.isEmpty()) {
      EXPECT_EQ(cases[i].contents, kmz::UnzipFile(Path("out.kmz"), "files/" + packed[i]));
    }
  }
  // Again, out of the archive; and as KML, where targets go on beginning at the model's file.
  const auto copy = Load(Path("out.kmz"));
  ASSERT_EQ(QString(), copy->WriteKmlFile(Path("again.kmz")));
  EXPECT_EQ(packed.mid(0, 6), targets(kmz::UnzipFile(Path("again.kmz"), QString())).mid(0, 6));
  QDir(folder_.path()).mkdir("other");
  ASSERT_EQ(QString(), tree->WriteKmlFile(Path("other/doc.kml")));
  EXPECT_EQ(targets(Contents(Path("doc.kml"))), targets(Contents(Path("other/doc.kml"))));
  ASSERT_EQ(QString(), copy->WriteKmlFile(Path("other/doc.kml")));
  EXPECT_EQ("of the model", Contents(Path("other/c.png"))) << "brought out of the archive";

  // Nobody knows what a file needs that wasn't loaded.
  for (const QString& href :
       {QString("models/house.dae"), QString("http://example.com/h.dae"), QString()}) {
    const auto bare =
        Load(MakeFile("bare.kml", text.arg("").replace("models/house.dae", href).toUtf8()));
    EXPECT_EQ(href.startsWith("models")
                  ? "Could not write \"" + Path("bare.kmz") +
                        "\" because the model file "
                        "\"house.dae\"\nhas not been loaded.\n\nTo load the model file, fly to the "
                        "location of the model and\nmake sure that its placemark is visible "
                        "(checked).\n"
                  : QString(),
              bare->WriteKmlFile(Path("bare.kmz")));
    EXPECT_EQ(QString(), bare->WriteKmlFile(Path("other/bare.kml")));
  }
}

TEST_F(KmzTest, ImagesInMarkupAndOtherDocumentsKeepTheirMeaning) {
  MakeFile("a/x.png", "x");
  const QString markup = "<description><![CDATA[<img src=\"%1\"><IMG alt='' src='%2'/>"
                         "<img src=\"$[y]\">]]></description><styleUrl>%3</styleUrl>";
  const QByteArray text = markup.arg("a/x.png", "none.png", "other.kml#s").toUtf8();
  const auto tree = Load(MakeFile("doc.kml", "<kml><Placemark>" + text + "</Placemark></kml>"));
  ASSERT_EQ(QString(), tree->WriteKmlFile(Path("out.kmz")));
  QString packed = QString::fromUtf8(kmz::UnzipFile(Path("out.kmz"), QString()));
  EXPECT_TRUE(packed.remove('\n').remove('\t').contains(
      markup.arg("files/x.png", "../none.png", "../other.kml#s")))
      << packed.toStdString();
  EXPECT_EQ("x", kmz::UnzipFile(Path("out.kmz"), "files/x.png"));
}

TEST_F(KmzTest, ImageTagsMeanWhatABrowserTakesThemFor) {
  MakeFile("a&b.png", "1");
  MakeFile("c.png", "2");
  const std::pair<const char*, const char*> cases[] = {
      {"<img src=\"a&amp;b.png\">", "<img src=\"files/a_b.png\">"},
      {"<img src='a&b.png'>", "<img src='files/a_b.png'>"},
      {"<img data-src='no.png' alt=\"src='no.png' >\" width=5 SRC = 'c.png'/>",
       "<img data-src='no.png' alt=\"src='no.png' >\" width=5 SRC = 'files/c.png'/>"},
      {"<img alt=\"<img src='c.png'>", "<img alt=\"<img src='files/c.png'>"},
      {"<img src='c.png?v=1'>", "<img src='files/c.png'>"},
      {"<img src=c.png><imgs src='c.png'>", "<img src=c.png><imgs src='c.png'>"},
  };
  for (const auto& [read, written] : cases) {
    const QByteArray text = "<description><![CDATA[" + QByteArray(read) + "]]></description>";
    const auto tree = Load(MakeFile("doc.kml", "<kml><Placemark>" + text + "</Placemark></kml>"));
    ASSERT_EQ(QString(), tree->WriteKmlFile(Path("out.kmz")));
    const QString packed = QString::fromUtf8(kmz::UnzipFile(Path("out.kmz"), QString()));
    EXPECT_TRUE(packed.contains(QString("[CDATA[%1]]>").arg(written))) << packed.toStdString();
  }
}

TEST_F(KmzTest, FilesInAnotherArchiveAreCopied) {
  Pack("in.kmz",
       {{"doc.kml", DocumentWith({"Images/a.png", "images/sub/a.png", "gone.png", "../beside.png",
                                  "b%20c.JPG", "deep/../../in.kmz/Images/a.png"})},
        {"images/A.png", "1"},
        {"images\\sub\\a.png", "2"},
        {"b c.JPG", QByteArray(5000, 'j')},
        {"unused.png", "4"}});
  MakeFile("beside.png", "5");

  const QString outputs[] = {Path("out.kmz"), Path("in.kmz")}; // the second in place
  const RefPtr<SchemaObject> tree = Load(Path("in.kmz"));
  for (const QString& output : outputs) {
    QStringList unreadable;
    ASSERT_EQ(QString(), tree->WriteKmlFile(output, 0, &unreadable));
    EXPECT_EQ(QStringList({"files/a.png", "files/a_01.png", "../in.kmz/gone.png",
                           "files/beside.png", "files/b c.JPG", "files/a.png"}),
              References(output));
    EXPECT_EQ(QStringList(Path("in.kmz/gone.png")), unreadable);
    EXPECT_EQ(QStringList({"doc.kml", "files/a.png", "files/a_01.png", "files/beside.png",
                           "files/b c.JPG"}),
              kmz::ListFileEntries(output));
    EXPECT_EQ("2", kmz::UnzipFile(output, "files/a_01.png"));
    EXPECT_EQ(QByteArray(5000, 'j'), kmz::UnzipFile(output, "files/b c.JPG"));
  }
  EXPECT_EQ(Contents(outputs[0]), Contents(outputs[1]));
}

TEST_F(KmzTest, DocumentsInAFolderOfTheirArchiveReferFromThere) {
  std::vector<std::pair<const char*, QByteArray>> entries{
      {"__MACOSX/._doc.kml", "junk"},
      {"__macosx/a/doc.kml", "junk"},
      {"Sub/main.kml", DocumentWith({"a.png", "both.png", "root.png", "../up.png", "n#1.png?v=2",
                                     "b%20c.png", "../../beside.png", "none.png"})}};
  for (const char* name : {"Sub/a.png", "Sub/both.png", "both.png", "root.png", "up.png",
                           "Sub/n#1.png", "Sub/b c.png"})
    entries.emplace_back(name, name);
  Pack("in.kmz", entries);
  MakeFile("beside.png", "beside");

  const RefPtr<SchemaObject> tree = Load(Path("in.kmz"));
  ASSERT_TRUE(tree);
  EXPECT_EQ(QString(), tree->WriteKmlFile(Path("out.kmz")));
  const char* const contents[] = {"Sub/a.png",   "Sub/both.png", "root.png", "up.png",
                                  "Sub/n#1.png", "Sub/b c.png",  "beside"};
  const QStringList references = References(Path("out.kmz"));
  ASSERT_EQ(static_cast<int>(std::size(contents)) + 1, references.size());
  for (int i = 0; i < static_cast<int>(std::size(contents)); ++i)
    EXPECT_EQ(contents[i], kmz::UnzipFile(Path("out.kmz"), references[i])) << i;
}

TEST_F(KmzTest, FilesOfWhatWasDisplacedTravelToo) {
  const QString style = "<Style><IconStyle><Icon><href>%1.png</href></Icon></IconStyle></Style>";
  MakeFile("a.png", "A");
  MakeFile("b.png", "B");
  const QString file = MakeFile(
      "in.kml",
      ("<kml><Placemark>" + style.arg('a') + style.arg('b') + "</Placemark></kml>").toUtf8());
  EXPECT_EQ("", Load(file)->WriteKmlFile(Path("out.kmz")));
  EXPECT_EQ(QStringList({"files/a.png", "files/b.png"}), References(Path("out.kmz")));
  EXPECT_EQ("A", kmz::UnzipFile(Path("out.kmz"), "files/a.png"));
}

TEST_F(KmzTest, LocalNamesMayHoldWhatBeginsAQuery) {
  for (const QString folder : {"C#", "what?", "50%"}) {
    SCOPED_TRACE(folder.toStdString());
    const QStringList references = {"a.png", "n#1.png", "b.png?v=1#f", "c%20d.png", "e%20f.png"};
    MakeFile(folder + "/a.png", "a");
    MakeFile(folder + "/n#1.png", "n");
    MakeFile(folder + "/b.png", "b");
    MakeFile(folder + "/c d.png", "c");
    MakeFile(folder + "/e%20f.png", "e");
    const QString document = MakeFile(folder + "/doc.kml", DocumentWith(references));
    // Packed, and out of an archive in such a folder packed again.
    EXPECT_EQ(QString(), Load(document)->WriteKmlFile(Path(folder + "/x#1.kmz")));
    EXPECT_EQ(QString(), Load(Path(folder + "/x#1.kmz"))->WriteKmlFile(Path("again.kmz")));
    const QStringList copies = References(Path("again.kmz"));
    ASSERT_EQ(5, copies.size());
    for (int i = 0; i < 5; ++i)
      EXPECT_EQ(QByteArray("anbce").mid(i, 1), kmz::UnzipFile(Path("again.kmz"), copies[i])) << i;
  }
}

TEST_F(KmzTest, FilesFromElsewhereComeOnlyWhereTheyAreWanted) {
  MakeFile("home/own.png", "1");
  MakeFile("home/sub/own.png", "2");
  MakeFile("beside.png", "3");
  QFile::link(Path("beside.png"), Path("home/link.png"));
  const QStringList references = {"own.png", "sub/own.png", "../beside.png", "link.png"};
  const RefPtr<SchemaObject> tree = Load(MakeFile("home/doc.kml", DocumentWith(references)));
  QStringList outside;
  EXPECT_EQ(QString(), tree->WriteKmlFile(Path("out.kmz"), kWriteOwnFilesOnly, nullptr, &outside));
  EXPECT_EQ(QStringList({Path("beside.png"), Path("home/link.png")}), outside);
  EXPECT_EQ(QStringList({"files/own.png", "files/own_01.png", "../beside.png", "../home/link.png"}),
            References(Path("out.kmz")));

  // The archive is all that such a document has.
  const RefPtr<SchemaObject> packed = Load(Path("out.kmz"));
  EXPECT_EQ(QString(),
            packed->WriteKmlFile(Path("again.kmz"), kWriteOwnFilesOnly, nullptr, &outside));
  EXPECT_EQ(QStringList({Path("beside.png"), Path("home/link.png")}), outside);
  EXPECT_EQ(Contents(Path("out.kmz")), Contents(Path("again.kmz")));
}

TEST_F(KmzTest, WritingAgainLeavesNoFurtherCopies) {
  MakeFile("home/x.png", "1");
  const auto packed = Load(MakeFile("home/doc.kml", DocumentWith({"x.png"})));
  ASSERT_EQ(QString(), packed->WriteKmlFile(Path("in.kmz")));
  const RefPtr<SchemaObject> tree = Load(Path("in.kmz"));
  MakeFile("out/x.png", "of somebody else");
  for (int i = 0; i < 3; ++i)
    ASSERT_EQ(QString(), tree->WriteKmlFile(Path("out/doc.kml")));
  const QDir out(Path("out"));
  EXPECT_EQ(QStringList({"doc.kml", "x.png", "x_0.png"}), out.entryList(QDir::Files));
  EXPECT_EQ("1", Contents(Path("out/x_0.png")));

  // A write that fails takes back only what is its own.
  QFile::remove(Path("out/x_0.png"));
  {
    WriteState state(Path("out/doc.kml"), QString(), false);
    tree->WriteKml(state);
    EXPECT_TRUE(QFile::exists(Path("out/x_0.png")));
    state.SetError("no");
  }
  EXPECT_EQ(QStringList({"doc.kml", "x.png"}), out.entryList(QDir::Files));
}

TEST_F(KmzTest, OtherReadersSeeMarkedNamesOfTheFirstDay) {
  const QByteArray pixels(5000, 'p');
  const QString odd = QString::fromUtf8("\xC3\xBC.JPG");
  MakeFile("a.png", pixels);
  MakeFile(odd, pixels);
  const RefPtr<SchemaObject> tree =
      Load(MakeFile("doc.kml", DocumentWith({"a.png", odd, "http://example.com/"})));
  {
    WriteState state(Path("out.kmz"), QString(), false);
    ASSERT_EQ(WriteState::kWriteKmzFile, state.mode());
    state.AddResourceMapEntry("name", "old", "object");
    state.AddResourceMapEntry("name", "value", "object");
    tree->WriteKml(state);
    // A link may be left where it is.
    const auto link = Read<Link>("<Link><href>file://" + Path("a.png") + "</href></Link>");
    EXPECT_EQ("files/a.png", state.RegisterLink(*link));
    link->SetEmbedInKmz(false);
    EXPECT_EQ(link->GetHref(), state.RegisterLink(*link));
    state.Finish();
    EXPECT_EQ(QString(), state.error());
  }
  EXPECT_EQ("value\tname\tobject\n", kmz::UnzipFile(Path("out.kmz"), "textures.txt"));

  const std::pair<QByteArray, bool> cases[] = {{"doc.kml", false},
                                               {"textures.txt", false},
                                               {"files/a.png", false},
                                               {"files/" + odd.toUtf8(), true}};
  const unzFile zip = unzOpen64(QFile::encodeName(Path("out.kmz")).constData());
  ASSERT_TRUE(zip);
  ASSERT_EQ(UNZ_OK, unzGoToFirstFile(zip));
  for (const auto& [entry, stored] : cases) {
    SCOPED_TRACE(entry.constData());
    unz_file_info64 info;
    QByteArray name(100, '\0');
    ASSERT_EQ(UNZ_OK, unzGetCurrentFileInfo64(zip, &info, name.data(), 99, nullptr, 0, nullptr, 0));
    EXPECT_EQ(entry, name.constData());
    EXPECT_EQ(stored ? 0U : unsigned{Z_DEFLATED}, info.compression_method);
    EXPECT_EQ(1U << 11, info.flag & ~6U);    // UTF-8; the rest tells the level
    EXPECT_EQ((1U << 5) | 1U, info.dosDate); // 1980-01-01
    EXPECT_EQ(0U, info.size_file_extra + info.size_file_comment);
    unzGoToNextFile(zip);
  }
  EXPECT_EQ(UNZ_END_OF_LIST_OF_FILE, unzGoToNextFile(zip));
  unzClose(zip);
}

TEST_F(KmzTest, AFailureLeavesTheOldArchiveAndNothingElse) {
  QByteArray noise(400000, '\0');
  unsigned state = 1;
  for (char& byte : noise)
    byte = static_cast<char>((state = state * 1664525U + 1013904223U) >> 24);
  MakeFile("big.png", noise);
  const RefPtr<SchemaObject> tree = Load(MakeFile("doc.kml", DocumentWith({"big.png"})));
  MakeFile("old.kmz", "old");
  ASSERT_TRUE(QDir(folder_.path()).mkdir("folder.kmz"));
  ASSERT_EQ(0, ::mkfifo(QFile::encodeName(Path("pipe.kmz")).constData(), 0600));
  const QStringList before = Files();

  for (const char* name : {"folder.kmz", "missing/new.kmz", "pipe.kmz"})
    EXPECT_EQ("Could not open file for writing.", tree->WriteKmlFile(Path(name))) << name;

  // No room for all of it: in the document, among the file's pieces, at the very end.
  ASSERT_EQ(QString(), tree->WriteKmlFile(Path("size.kmz")));
  const auto size = static_cast<rlim_t>(QFileInfo(Path("size.kmz")).size());
  QFile::remove(Path("size.kmz"));
  rlimit limit;
  ::getrlimit(RLIMIT_FSIZE, &limit);
  const auto restore = std::signal(SIGXFSZ, SIG_IGN);
  for (const rlim_t room : {rlim_t(0), rlim_t(100), rlim_t(100000), rlim_t(300000), size - 1}) {
    for (const char* name : {"old.kmz", "new.kmz"}) {
      const rlimit small{room, limit.rlim_max};
      ::setrlimit(RLIMIT_FSIZE, &small);
      const QString error = tree->WriteKmlFile(Path(name));
      ::setrlimit(RLIMIT_FSIZE, &limit);
      EXPECT_EQ("Could not write file.", error) << room;
    }
  }
  std::signal(SIGXFSZ, restore);

  for (const char* name : {"old.kmz", "new.kmz"}) {
    WriteState write(Path(name), QString(), false);
    tree->WriteKml(write);
    write.SetError("no");
  }
  EXPECT_EQ("old", Contents(Path("old.kmz")));
  EXPECT_EQ(before, Files());
  EXPECT_EQ(QString(), tree->WriteKmlFile(Path("old.kmz")));
  EXPECT_EQ(before, Files());
  EXPECT_EQ(noise, kmz::UnzipFile(Path("old.kmz"), "files/big.png"));
}

} // namespace vorrel::kestan
