// The command-line tool, run as a user runs it.

#include "kestan/host/kmz.h"
#include "tests/tools/tooltest.h"

#include <QFileInfo>

namespace vorrel::kestan {

namespace {

TEST_F(KestanToolTest, CatWritesWhatTheLibraryWrites) {
  const QString file = QStringLiteral(KESTAN_TEST_DATA "/sample.kml");
  const auto tree = ReadObject(ReadData("sample.kml"));
  ASSERT_TRUE(tree);
  struct Case {
    QStringList options;
    unsigned flags;
  };
  const Case cases[] = {{{}, 0}, {{"--no-hint"}, kWriteNoHint}, {{"--no-hoist"}, kWriteNoHoist}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.options.join(' ').toStdString());
    const Result result = Run(QStringList("cat") + c.options + QStringList(file));
    EXPECT_EQ(0, result.status);
    EXPECT_EQ(Write(*tree, c.flags), result.out);
    EXPECT_EQ("", result.err);
  }

  const QString source = "<DocumentSource>there</DocumentSource>";
  EXPECT_TRUE(Run({"cat", MakeFile("source.kml", "<kml>" + source.toUtf8() + "<Placemark/></kml>")})
                  .out.contains(source))
      << "what the root holds";

  const Result toFile = Run({"cat", "-o" + Path("out.kml"), file});
  EXPECT_EQ(0, toFile.status);
  EXPECT_EQ("", toFile.out);
  EXPECT_EQ(Write(*tree).toUtf8(), Contents("out.kml"));
}

TEST_F(KestanToolTest, CatPacksAndRefersAsFarAsItIsTold) {
  const QTemporaryDir elsewhere;
  const QString secret = elsewhere.filePath("secret.txt");
  QFile outside(secret);
  ASSERT_TRUE(outside.open(QIODevice::WriteOnly));
  MakeFile("x.png", "1");
  const QString file =
      MakeFile("in.kml", "<kml><Placemark><Style><IconStyle><Icon><href>x.png"
                         "</href></Icon></IconStyle></Style><description>"
                         "<![CDATA[<img src='" +
                             secret.toUtf8() + "'>]]></description></Placemark></kml>");
  const Result packed = Run({"cat", "-o", Path("out.kmz"), file});
  EXPECT_EQ(1, packed.status);
  EXPECT_TRUE(packed.err.contains(secret + "\" lies outside")) << packed.err.toStdString();
  EXPECT_EQ(QStringList({"doc.kml", "files/x.png"}), kmz::ListFileEntries(Path("out.kmz")));
  EXPECT_EQ(0, Run({"cat", "--outside", "-o", Path("out.kmz"), file}).status);
  EXPECT_EQ(3, kmz::ListFileEntries(Path("out.kmz")).size());

  EXPECT_TRUE(Run({"cat", file}).out.contains("<href>" + Path("x.png") + "</href>"));
  const Result relative = Run({"cat", "--relative", "-o", "-", file});
  EXPECT_TRUE(relative.out.contains("<href>x.png</href>")) << relative.out.toStdString();

  const Result folder = Run({"cat", "-o", elsewhere.path(), file});
  EXPECT_EQ(3, folder.status);
  EXPECT_TRUE(folder.err.contains("is a folder"));
}

TEST_F(KestanToolTest, TreeShowsOneObjectALine) {
  const QString file = MakeFile(
      "a.kml",
      "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Folder id=\"f\"><name>Two\nlines</name>"
      "<Placemark><LineString><coordinates>1,2 3,4 5,6</coordinates></LineString></Placemark>"
      "<Placemark id=\"p\"><name>\xC3\xA9</name></Placemark></Folder></kml>");
  const Result result = Run({"tree", file});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("Folder #f \"Two lines\", children: 2\n"
            "  Placemark, children: 1\n"
            "    LineString, coordinates: 3\n"
            "  Placemark #p \"\xC3\xA9\"\n",
            result.out);
}

TEST_F(KestanToolTest, ExitStatusTellsUsageReadingAndWritingApart) {
  const QString good = MakeFile("good.kml", "<kml><Placemark/></kml>");
  struct Case {
    QStringList words;
    int status;
  };
  const Case cases[] = {
      {{}, 2},
      {{"fly", good}, 2},
      {{"cat"}, 2},
      {{"tree", good, good}, 2},
      {{"tree", "--no-hint", good}, 2},
      {{"cat", "--loud", good}, 2},
      {{"cat", good, "-o"}, 2},
      {{"cat", "--namespace", "atom=x", good}, 2},
      {{"cat", "--json", good}, 2},
      {{"links", good, good}, 2},
      {{"links", "--view", "1,2,3", good}, 2},
      {{"links", "--view", "1,2,3,nan", good}, 2},
      {{"links", "--view", "91,0,0,0", good}, 2},
      {{"links", "--view", "0,1,0,0", good}, 2},
      {{"links", "--json=1", good}, 2},
      {{"links", "--base", "http://example.com/a.kml", Path("none.kml")}, 1},
      {{"tree", Path("none.kml")}, 1},
      {{"cat", Path("none.kml")}, 1},
      {{"cat", "-o", Path("no/such/folder/out.kml"), good}, 3},
      {{"cat", "-o", Path("no/such/folder/out.kmz"), good}, 3},
      {{"cat", "-o", "/dev/full", good}, 3},
      {{"--help"}, 0},
      {{"cat", "--help"}, 0},
      {{"--version"}, 0},
      {{"-V"}, 0},
      {{"-Vx"}, 2},
      {{"cat", "-x", good}, 2},
      {{"tree", "file://" + good}, 0},
      {{"tree", "file:///none.kml"}, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.words.join(' ').toStdString());
    const Result result = Run(c.words);
    EXPECT_EQ(c.status, result.status);
    EXPECT_EQ(c.status == 0, result.err.isEmpty()) << result.err.toStdString();
    EXPECT_EQ(c.status == 0, !result.out.isEmpty());
  }
  for (const char* command : {"cat", "tree", "style"}) {
    EXPECT_EQ(3, Run({command, good}, "/dev/full").status) << command;
  }
}

TEST_F(KestanToolTest, CatPacksWhatTheDocumentRefersTo) {
  MakeFile("a.png", "A");
  const QByteArray image = "<img src='a.png'>";
  const QByteArray text =
      "<kml><Placemark><description><![CDATA[%1]]></description></Placemark></kml>";
  const QString whole = MakeFile("whole.kml", QByteArray(text).replace("%1", image));
  const QString part =
      MakeFile("part.kml", QByteArray(text).replace("%1", image + "<img src='none.png'>"));

  const Result packed = Run({"cat", "-o", Path("whole.KMZ"), whole});
  EXPECT_EQ(0, packed.status);
  EXPECT_EQ("", packed.out + packed.err);
  EXPECT_EQ("A", kmz::UnzipFile(Path("whole.KMZ"), "files/a.png"));

  const Result incomplete = Run({"cat", "-o", Path("part.kmz"), part});
  EXPECT_EQ(1, incomplete.status);
  EXPECT_EQ(1, incomplete.err.count('\n'));
  EXPECT_TRUE(incomplete.err.contains(Path("none.png"))) << incomplete.err.toStdString();
  EXPECT_EQ("A", kmz::UnzipFile(Path("part.kmz"), "files/a.png"));

  // Out of an archive, another process makes the same bytes.
  EXPECT_EQ(0, Run({"cat", "-o", Path("copy.kmz"), Path("whole.KMZ")}).status);
  EXPECT_EQ(Contents("whole.KMZ"), Contents("copy.kmz"));
}

TEST_F(KestanToolTest, StandardInputIsAFileLikeAnyOther) {
  const QByteArray text = "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Placemark id=\"p\">"
                          "<description><![CDATA[<img src='a.png'>]]></description>"
                          "<Style><IconStyle><Icon><href>a.png</href></Icon></IconStyle></Style>"
                          "</Placemark></kml>";
  const QString file = MakeFile("a.kml", text);
  MakeFile("a.png", "A");
  const QList<QStringList> commands = {
      {"cat"}, {"tree"}, {"style"}, {"links"}, {"links", "--base", "http://example.com/a.kml"}};
  for (const QStringList& command : commands) {
    SCOPED_TRACE(command.join(' ').toStdString());
    const Result result = Pipe(text, command + QStringList("-"));
    EXPECT_EQ(0, result.status) << result.err.toStdString();
    EXPECT_EQ(Run(command + QStringList(file)).out, result.out);
    // What `<(...)` of a shell stands for.
    EXPECT_EQ(result.out, Pipe(text, command + QStringList("/dev/stdin")).out);
  }
  EXPECT_EQ("-: fine\n", Pipe(text, {"check", "-"}).out);
  EXPECT_EQ(1, Run({"check", "-"}).status);

  // References are those of the present folder, and an archive comes through a pipe too.
  EXPECT_EQ(0, Pipe(text, {"cat", "-o", "out.kmz", "-"}).status);
  EXPECT_EQ("A", kmz::UnzipFile(Path("out.kmz"), "files/a.png"));
  EXPECT_EQ(Run({"tree", file}).out, Pipe(Contents("out.kmz"), {"tree", "-"}).out);
}

TEST_F(KestanToolTest, NamesOfFilesNeedNotBeText) {
  MakeFile("a.png", "A");
  MakeFile("a.kml", "<kml><Placemark><description><![CDATA[<img src='a.png'>]]></description>"
                    "</Placemark></kml>");
  // Such a name can't be handed over as an argument but by a shell.
  const auto shell = [this](const QString& script) {
    QProcess process;
    process.setWorkingDirectory(Path(""));
    process.start("sh", {"-c", script, KESTAN_TOOL});
    EXPECT_TRUE(process.waitForFinished(60000));
    return process.exitCode();
  };
  EXPECT_EQ(0, shell("name=$(printf 'caf\\351.kml'); mv a.kml \"$name\" && "
                     "\"$0\" cat -o out.kmz \"$name\""));
  EXPECT_EQ("A", kmz::UnzipFile(Path("out.kmz"), "files/a.png"));
  EXPECT_EQ(1, shell("\"$0\" tree \"$(printf 'no\\351.kml')\" 2> err"));
  EXPECT_EQ(3, shell("\"$0\" cat -o \"$(printf 'x\\351.kml')\" caf*.kml 2> err"));
  EXPECT_TRUE(Contents("err").contains("UTF-8"));
}

TEST_F(KestanToolTest, ADocumentThatCannotBeReadSaysWhy) {
  const QString foreign = MakeFile("foreign.kml", "<kml xmlns='http://example.org/kml/2.2'/>");
  const Result result = Run({"tree", foreign});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(result.err.contains("\"http://example.org/kml/2.2\""));
  EXPECT_TRUE(result.err.contains("--namespace kml=http://example.org/kml/ "));
  EXPECT_FALSE(Run({"tree", MakeFile("bad.kml", "<Geometry/>")}).err.contains("--namespace"));

  EXPECT_TRUE(Run({"tree", Path("none.kml")}).err.contains("No such file"));
  EXPECT_TRUE(Run({"tree", Path("")}).err.contains("directory"));
  EXPECT_FALSE(Run({"tree", "\x1B[2Jnone.kml"}).err.contains('\x1B'));
}

TEST_F(KestanToolTest, OtherNamespaceBasesComeFromOptionsOrTheEnvironment) {
  const QString file = MakeFile("other.kml", "<kml xmlns='http://example.org/kml/2.2' "
                                             "xmlns:e='http://example.org/ext/2.2'><Placemark>"
                                             "<e:balloonVisibility>1</e:balloonVisibility>"
                                             "</Placemark></kml>");
  const QString kml = "kml=http://example.org/kml/";
  const QString gx = "gx=http://example.org/ext/";
  EXPECT_EQ(1, Run({"check", file}).status);
  const Result byOption = Run({"cat", "--namespace", kml, "--namespace=" + gx, file});
  EXPECT_EQ(0, byOption.status);
  EXPECT_TRUE(byOption.out.contains("<gx:balloonVisibility>1</gx:balloonVisibility>"));
  environment_.insert("KESTAN_NAMESPACES", "  " + kml + " " + gx);
  EXPECT_EQ(0, Run({"check", file}).status);
  EXPECT_EQ(byOption.out, Run({"cat", file}).out);
}

} // namespace

} // namespace vorrel::kestan
