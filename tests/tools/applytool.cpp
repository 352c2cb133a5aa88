#include "tests/tools/tooltest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vorrel::kestan {

namespace {

class ApplyToolTest : public KestanToolTest {
protected:
  ApplyToolTest() {
    MakeFile("doc.kml", "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Folder id=\"f\"><name>old"
                        "</name><Placemark id=\"p\"><Point><coordinates>10,20,0</coordinates>"
                        "</Point></Placemark><Placemark><Style><LineStyle id=\"l\"/></Style>"
                        "</Placemark></Folder></kml>\n");
    MakeFile("a.kml", "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><NetworkLinkControl><Update>"
                      "<targetHref>doc.kml</targetHref>\n<Change><Folder targetId=\"f\"><name>new"
                      "</name></Folder><Placemark targetId=\"p\"><Point><coordinates>20,30,10"
                      "</coordinates></Point></Placemark></Change></Update></NetworkLinkControl>"
                      "</kml>\n");
    MakeFile("b.kml",
             "<NetworkLinkControl>\n<Update><targetHref>doc.kml</targetHref>\n<Create><Folder "
             "targetId=\"f\"><Placemark id=\"n\"><name>made</name></Placemark></Folder></Create>\n"
             "<Change><LineStyle targetId=\"l\"><width>3</width></LineStyle></Change>\n"
             "<Delete><Placemark targetId=\"none\"/></Delete><Delete><Placemark targetId=\"p\"/>"
             "</Delete></Update></NetworkLinkControl>\n");
  }
  Result ApplyTrusted(const QStringList& words) {
    return Run(
        QStringList{"apply", "--base", "http://h/doc.kml", "--update-base", "http://h/update.kml"} +
        words);
  }
};

TEST_F(ApplyToolTest, UpdatesAreAppliedInOrderAndTakenBack) {
  const Result after = ApplyTrusted({"doc.kml", "a.kml"});
  EXPECT_EQ(0, after.status) << after.err.toStdString();
  EXPECT_EQ("", after.err);
  EXPECT_TRUE(after.out.contains("<name>new</name>"));
  EXPECT_TRUE(after.out.contains("20,30,10"));

  const Result half = ApplyTrusted({"--at", "0.5", "doc.kml", "a.kml"});
  EXPECT_TRUE(half.out.contains("<name>old</name>"));
  EXPECT_TRUE(half.out.contains("15,25,5"));

  const Result undone = ApplyTrusted({"--undo", "doc.kml", "a.kml", "a.kml"});
  EXPECT_EQ(Run({"cat", "doc.kml"}).out, undone.out);

  EXPECT_EQ(0, ApplyTrusted({"-o", "out.kml", "doc.kml", "a.kml"}).status);
  EXPECT_EQ(after.out.toUtf8(), Contents("out.kml"));
}

TEST_F(ApplyToolTest, WhatIsRefusedIsTold) {
  const Result result = ApplyTrusted({"doc.kml", "a.kml", "b.kml"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("b.kml:5: error: Could not find <targetId> none [failed-update]\n", result.err);
  EXPECT_TRUE(result.out.contains("<name>made</name>"));
  EXPECT_FALSE(result.out.contains("id=\"p\""));

  const Result stranger = Run({"apply", "doc.kml", "a.kml"});
  EXPECT_EQ(1, stranger.status);
  EXPECT_EQ(
      QString("a.kml:2: error: <Update> Security Violation! [security-violation]\n").repeated(2),
      stranger.err);
  EXPECT_EQ(Run({"cat", "doc.kml"}).out, stranger.out);
}

TEST_F(ApplyToolTest, ADifferenceIsALineEach) {
  const Result result = ApplyTrusted({"--diff", "doc.kml", "a.kml", "b.kml"});
  EXPECT_EQ("#f name: \"old\" -> \"new\"\n"
            "#p: deleted, Placemark\n"
            "#l width: \"1\" -> \"3\"\n"
            "#n: created, Placemark\n",
            result.out);

  const Result half = ApplyTrusted({"--diff", "--at", "0.5", "doc.kml", "a.kml"});
  EXPECT_EQ("#p/Point coordinates: \"10,20,0\" -> \"15,25,5\"\n", half.out);
  EXPECT_EQ("", ApplyTrusted({"--diff", "--undo", "doc.kml", "a.kml"}).out);

  const Result json = ApplyTrusted({"--diff", "--json", "doc.kml", "a.kml", "b.kml"});
  const QJsonArray changes =
      QJsonDocument::fromJson(json.out.toUtf8()).object().value("changes").toArray();
  ASSERT_EQ(4, changes.size()) << json.out.toStdString();
  const QJsonObject first = changes[0].toObject();
  EXPECT_EQ("set", first.value("change").toString());
  EXPECT_EQ("#f", first.value("object").toString());
  EXPECT_EQ("Folder", first.value("class").toString());
  EXPECT_EQ("name", first.value("field").toString());
  EXPECT_EQ("old", first.value("old").toString());
  EXPECT_EQ("new", first.value("new").toString());
  const QJsonObject last = changes[3].toObject();
  EXPECT_EQ("created", last.value("change").toString());
  EXPECT_TRUE(last.value("field").isNull());
}

TEST_F(ApplyToolTest, WrongUseIsTold) {
  const struct {
    QStringList words;
    const char* message;
    int status;
  } cases[] = {
      {{"apply", "doc.kml"}, "no update given", 2},
      {{"apply", "--json", "doc.kml", "a.kml"}, "--json needs --diff", 2},
      {{"apply", "--at", "2", "doc.kml", "a.kml"}, "--at needs a number from 0 to 1", 2},
      {{"apply", "--at", "nan", "doc.kml", "a.kml"}, "--at needs a number from 0 to 1", 2},
      {{"cat", "--undo", "doc.kml"}, "--undo belongs to \"apply\"", 2},
      {{"apply", "doc.kml", "doc.kml"}, "doc.kml: the document holds no update", 1},
      {{"apply", "doc.kml", "none.kml"}, "none.kml: Could not open file", 1},
      {{"apply", "none.kml", "a.kml"}, "none.kml: Could not open file", 1},
  };
  for (const auto& c : cases) {
    const Result result = Run(c.words);
    EXPECT_EQ(c.status, result.status) << c.message;
    EXPECT_TRUE(result.err.contains(c.message)) << result.err.toStdString();
    EXPECT_EQ("", result.out);
  }
}

} // namespace

} // namespace vorrel::kestan
