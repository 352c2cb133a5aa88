#include "tests/tools/tooltest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace vorrel::kestan {

namespace {

class TourToolTest : public KestanToolTest {
protected:
  TourToolTest() {
    const auto change = [](const char* content) {
      return QByteArray("<Update><targetHref></targetHref><Change><Placemark targetId=\"p\">") +
             content + "</Placemark></Change></Update>";
    };
    const QByteArray move = "<Point><coordinates>%,0,0</coordinates></Point>";
    MakeFile("doc.kml",
             "<kml xmlns=\"http://www.opengis.net/kml/2.2\" "
             "xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><Document><Placemark id=\"p\">"
             "<name>a</name><Point><coordinates>0,0,0</coordinates></Point></Placemark>"
             "<gx:Tour id=\"t\"><name>Round</name><gx:Playlist>"
             "<gx:AnimatedUpdate><gx:duration>4</gx:duration>" +
                 change(QByteArray(move).replace("%", "8")) +
                 "</gx:AnimatedUpdate><gx:FlyTo><gx:duration>2.5</gx:duration><gx:flyToMode>smooth"
                 "</gx:flyToMode><LookAt><longitude>1</longitude><gx:altitudeMode>absolute"
                 "</gx:altitudeMode></LookAt></gx:FlyTo>"
                 "<gx:AnimatedUpdate>" +
                 change("<name>b</name>") +
                 "<gx:delayedStart>1</gx:delayedStart></gx:AnimatedUpdate><gx:TourControl/>"
                 "<gx:SoundCue><href>a.mp3</href></gx:SoundCue><gx:AnimatedUpdate><gx:duration>2"
                 "</gx:duration>" +
                 change(QByteArray(move).replace("%", "10")) +
                 "</gx:AnimatedUpdate><gx:Wait><gx:duration>1</gx:duration></gx:Wait>"
                 "</gx:Playlist></gx:Tour></Document></kml>\n");
  }
};

TEST_F(TourToolTest, EachStepHasItsTurn) {
  const Result result = Run({"tour", "doc.kml"});
  EXPECT_EQ(0, result.status) << result.err.toStdString();
  EXPECT_EQ("Tour #t \"Round\": 9.5 s\n"
            "  0 s: AnimatedUpdate for 4 s, target=" +
                Path("doc.kml") +
                "\n"
                "  4 s: FlyTo for 2.5 s, flyToMode=smooth, LookAt longitude=1 "
                "altitudeMode=absolute\n"
                "  6.5 s: AnimatedUpdate for 0 s, from 7.5 s, target=" +
                Path("doc.kml") +
                "\n"
                "  6.5 s: TourControl for 0 s\n"
                "  6.5 s: SoundCue for 0 s, href=a.mp3\n"
                "  6.5 s: AnimatedUpdate for 2 s, target=" +
                Path("doc.kml") +
                "\n"
                "  8.5 s: Wait for 1 s\n",
            result.out);
  const QJsonDocument json =
      QJsonDocument::fromJson(Run({"tour", "--json", "doc.kml", "t"}).out.toUtf8());
  const QJsonObject tour = json.object().value("tours").toArray().at(0).toObject();
  EXPECT_EQ(9.5, tour.value("duration").toDouble());
  const QJsonObject flight = tour.value("steps").toArray().at(1).toObject();
  EXPECT_EQ(4.0, flight.value("begin").toDouble());
  EXPECT_EQ("1", flight.value("view").toObject().value("longitude").toString());
}

TEST_F(TourToolTest, TheDocumentIsAsItsUpdatesHaveMadeIt) {
  const struct {
    const char* at;
    const char* place;
    const char* name;
    const char* view;
  } cases[] = {
      {"0", "0,0,0", "a", "0 s: at no view\n"},
      {"1", "2,0,0", "a", "1 s: at no view\n"},
      {"4", "8,0,0", "a",
       "4 s: flying to LookAt longitude=1 altitudeMode=absolute, 0% of the way\n"},
      {"6", "8,0,0", "a",
       "6 s: flying to LookAt longitude=1 altitudeMode=absolute, 80% of the way\n"},
      // The second move starts where the first one ended.
      {"7", "8.5,0,0", "a", "7 s: at LookAt longitude=1 altitudeMode=absolute\n"},
      {"7.5", "9,0,0", "b", "7.5 s: at LookAt longitude=1 altitudeMode=absolute\n"},
      {"1000", "10,0,0", "b", "1000 s: at LookAt longitude=1 altitudeMode=absolute\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.at);
    const Result result = Run({"tour", "--at", c.at, "doc.kml"});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ(c.view, result.err);
    EXPECT_EQ(QStringLiteral("<coordinates>%1</coordinates>").arg(c.place),
              Element(result.out, "coordinates").remove(QRegularExpression("\\s")));
    EXPECT_EQ(QStringLiteral("<name>%1</name>").arg(c.name), Element(result.out, "name"));
    const Result saved = Run({"tour", "--at", c.at, "-o", "out.kml", "doc.kml", "t"});
    EXPECT_EQ(c.view, saved.out);
    EXPECT_EQ("", saved.err);
    EXPECT_EQ(result.out.toUtf8(), Contents("out.kml"));
  }
  const QJsonObject flight =
      QJsonDocument::fromJson(
          Run({"tour", "--json", "--at", "6", "-o", "out.kml", "doc.kml"}).out.toUtf8())
          .object();
  EXPECT_EQ(0.8, flight.value("fraction").toDouble());
  EXPECT_EQ("LookAt", flight.value("view").toObject().value("class").toString());
}

TEST_F(TourToolTest, WhatCannotBeShownIsTold) {
  MakeFile("two.kml", "<Folder xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><gx:Tour id=\"x\"/>"
                      "<gx:Tour id=\"y\"><gx:Playlist><gx:AnimatedUpdate><Update><targetHref>"
                      "two.kml</targetHref></Update></gx:AnimatedUpdate></gx:Playlist></gx:Tour>"
                      "</Folder>");
  MakeFile("none.kml", "<Folder/>");
  const struct {
    QStringList words;
    const char* message;
    int status;
  } cases[] = {
      {{"tour", "none.kml"}, "none.kml: the document has no tour", 1},
      {{"tour", "two.kml", "z"}, "two.kml: the document has no tour \"z\"", 1},
      {{"tour", "--at", "1", "two.kml"}, "the document has 2 tours: give the id of one", 1},
      {{"tour", "--at", "1", "two.kml", "y"}, "the update at 0 s and its target", 0},
      {{"tour", "--at", "-1", "two.kml"}, "--at needs seconds", 2},
      {{"tour", "--at", "inf", "two.kml"}, "--at needs seconds", 2},
      {{"tour", "-o", "a.kml", "two.kml"}, "-o needs --at", 2},
      {{"tour", "two.kml", "x", "y"}, "more than one id given", 2},
      {{"tour", "missing.kml"}, "missing.kml: Could not open file", 1},
  };
  for (const auto& c : cases) {
    const Result result = Run(c.words);
    EXPECT_EQ(c.status, result.status) << c.message;
    EXPECT_TRUE(result.err.contains(c.message)) << result.err.toStdString();
  }
  EXPECT_EQ("Tour #x: 0 s\nTour #y: 0 s\n",
            Run({"tour", "two.kml"}).out.remove(QRegularExpression("  0 s: .*\\n")));
}

} // namespace

} // namespace vorrel::kestan
