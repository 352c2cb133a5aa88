// `kestan links`, run as a user runs it.

#include "tests/tools/tooltest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vorrel::kestan {

namespace {

using LinksToolTest = KestanToolTest;

const char kLinks[] =
    "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>"
    "<Style id='s'><IconStyle><Icon><href>files/a.png</href></Icon></IconStyle>"
    "<ListStyle><ItemIcon><href>b.png</href></ItemIcon></ListStyle></Style>"
    "<Style id='s0'><IconStyle><Icon><href>files/a.png</href></Icon></IconStyle></Style>"
    "<Style id='s1'><IconStyle><Icon><href>http://example.com/c.png?k=1</href>"
    "<refreshMode>onInterval</refreshMode><refreshInterval>0.1</refreshInterval>"
    "<viewRefreshMode>onStop</viewRefreshMode><viewRefreshTime>2</viewRefreshTime>"
    "</Icon></IconStyle></Style>"
    "<Style "
    "id='s2'><IconStyle><Icon><href>root://icons/palette-3.png</href></Icon></IconStyle></Style>"
    "<Style id='s3'><IconStyle><Icon><href/></Icon></IconStyle></Style>"
    "<StyleMap id='m'><Pair><key>normal</key><styleUrl>far.kml#t</styleUrl></Pair>"
    "<Pair><key>highlight</key><styleUrl>#s</styleUrl></Pair></StyleMap>"
    "<Placemark><styleUrl>http://example.com/x.kml#y</styleUrl></Placemark>"
    "<Placemark><styleUrl>root://styles#hl</styleUrl></Placemark>"
    "<Placemark><styleUrl>#gone</styleUrl></Placemark>"
    "</Document></kml>";

TEST_F(LinksToolTest, EachUrlIsShownOnceWithItsKindAndRefreshRule) {
  const QString file = MakeFile("a.kml", kLinks);
  const QString folder = file.left(file.size() - 5);
  const QString expected =
      "styleUrl (once): http://example.com/x.kml#y -> http://example.com/x.kml#y\n"
      "Icon (onChange): files/a.png -> %1files/a.png\n"
      "ItemIcon (once): b.png -> %1b.png\n"
      "Icon (onInterval 0.1 s, view onStop 2 s): http://example.com/c.png?k=1 -> "
      "http://example.com/c.png?k=1&BBOX=%2\n"
      "Icon (built in): root://icons/palette-3.png -> "
      "http://maps.vorrel.com/mapfiles/kml/pal3/icon56.png\n"
      "styleUrl (once): far.kml#t -> %1far.kml#t\n";
  struct Case {
    QStringList options;
    QString base;
    QString box;
  };
  const Case cases[] = {
      {{}, folder, "0,0,0,0"},
      {{"--view", "50,45,10,-5"}, folder, "-5,45,10,50"},
      {{"--view=10,-10,-170,170"}, folder, "170,-10,190,10"}, // across the antimeridian
      {{"--base", "http://h.example/d/doc.kml?v=1"}, "http://h.example/d/", "0,0,0,0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.options.join(' ').toStdString());
    const Result result = Run(QStringList("links") + c.options + QStringList(file));
    EXPECT_EQ(0, result.status);
    EXPECT_EQ(expected.arg(c.base, c.box), result.out);
    EXPECT_EQ("", result.err);
  }
}

TEST_F(LinksToolTest, JsonSaysTheSame) {
  const QString file = MakeFile("a.kml", kLinks);
  const Result result = Run({"links", "--json", "--base", "http://h.example/d/doc.kml", file});
  const QJsonArray links = QJsonDocument::fromJson(result.out.toUtf8()).object()["links"].toArray();
  ASSERT_EQ(6, links.size()) << result.out.toStdString();
  const QJsonObject refresh{{"refreshMode", "onInterval"},
                            {"refreshInterval", 0.1},
                            {"viewRefreshMode", "onStop"},
                            {"viewRefreshTime", 2}};
  const QJsonObject icon{{"kind", "Icon"},
                         {"href", "http://example.com/c.png?k=1"},
                         {"url", "http://example.com/c.png?k=1&BBOX=0,0,0,0"},
                         {"builtIn", false},
                         {"refresh", refresh}};
  EXPECT_EQ(QJsonValue(icon), links[3]);
  EXPECT_TRUE(links[4].toObject()["builtIn"].toBool());
  const QJsonObject style{{"kind", "styleUrl"},
                          {"href", "far.kml#t"},
                          {"url", "http://h.example/d/far.kml#t"},
                          {"builtIn", false},
                          {"refresh", QJsonValue()}};
  EXPECT_EQ(QJsonValue(style), links[5]);
}

TEST_F(LinksToolTest, TheFilesOfAModelAreShown) {
  const QString file = MakeFile(
      "a.kml", "<kml><Placemark><Model><Link><href>m/h.dae</href></Link><ResourceMap><Alias>"
               "<targetHref>../t.png</targetHref><sourceHref>t</sourceHref></Alias><Alias>"
               "<sourceHref>u</sourceHref></Alias></ResourceMap></Model></Placemark></kml>");
  EXPECT_EQ("Link (onChange): m/h.dae -> " + Path("m/h.dae") + "\nAlias (once): ../t.png -> " +
                Path("t.png") + '\n',
            Run({"links", file}).out);
}

TEST_F(LinksToolTest, WhatAServerSaysIsShownAndOnlyTheLinkThatCounts) {
  const QByteArray control =
      "<NetworkLinkControl><minRefreshPeriod>15</minRefreshPeriod><cookie>a=1</cookie>"
      "<expires>2030-01-01</expires><Update><targetHref>b.kml</targetHref><Delete/></Update>"
      "</NetworkLinkControl>";
  const QString file =
      MakeFile("a.kml", "<kml>" + control +
                            "<NetworkLink><Url><href>old.kml</href></Url><Link><href>"
                            "new.kml</href><refreshMode>onExpire</refreshMode></Link>"
                            "</NetworkLink></kml>");
  const QString rules = "NetworkLinkControl: cookie a=1, minRefreshPeriod 15, expires 2030-01-01\n";
  EXPECT_EQ(rules + "Link (onExpire): new.kml -> " + Path("new.kml") + '\n',
            Run({"links", file}).out);
  const QString controlTree = "NetworkLinkControl, children: 1\n  Update, target: b.kml\n";
  EXPECT_EQ(controlTree + "NetworkLink, children: 2\n  Url\n  Link\n", Run({"tree", file}).out);

  const QString lone = MakeFile("b.kml", "<kml>" + control + "</kml>");
  EXPECT_EQ(rules, Run({"links", lone}).out);
  EXPECT_EQ(controlTree, Run({"tree", lone}).out);
  const QJsonObject said = QJsonDocument::fromJson(Run({"links", "--json", lone}).out.toUtf8())
                               .object()["control"]
                               .toObject();
  EXPECT_EQ("a=1", said["cookie"].toString());
  EXPECT_EQ("15", said["minRefreshPeriod"].toString());
}

TEST_F(LinksToolTest, APhotoInTilesShowsTheTileOfAllOfIt) {
  const QString file = MakeFile(
      "a.kml", "<kml><PhotoOverlay><Icon><href>t/$[level]_$[x]_$[y].jpg</href></Icon><ImagePyramid>"
               "<existenceMapHref>m.txt</existenceMapHref></ImagePyramid></PhotoOverlay></kml>");
  const QString expected = "tile (once): t/$[level]_$[x]_$[y].jpg -> " + Path("t/0_0_0.jpg") +
                           "\nexistenceMapHref (once): m.txt -> " + Path("m.txt") +
                           "\nIcon (onChange): t/$[level]_$[x]_$[y].jpg -> " +
                           Path("t/$[level]_$[x]_$[y].jpg") + '\n';
  EXPECT_EQ(expected, Run({"links", file}).out);
}

TEST_F(LinksToolTest, LinksInRawContentAreMentioned) {
  const QString file = MakeFile("a.kml", "<kml><Document><unheard-of><href>x</href></unheard-of>"
                                         "</Document></kml>");
  const Result result = Run({"links", file});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_TRUE(result.err.endsWith("there are links in elements that aren't understood\n"));
}

} // namespace

} // namespace vorrel::kestan
