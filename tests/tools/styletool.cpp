// `kestan style`, run as a user runs it.

#include "tests/tools/tooltest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vorrel::kestan {

namespace {

using StyleToolTest = KestanToolTest;

QByteArray InDocument(const QByteArray& content) {
  return "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>" + content + "</Document></kml>";
}

/// The lines of a text without those about defaults, joined by "|".
QString WithoutDefaults(const QString& text) {
  QStringList lines;
  for (const QString& line : text.split('\n', Qt::SkipEmptyParts)) {
    if (!line.endsWith("(default)")) {
      lines += line.trimmed();
    }
  }
  return lines.join('|');
}

const char kShared[] =
    "<Style id='red'><LineStyle><color>ff0000ff</color><width>2</width></LineStyle></Style>"
    "<Style id='big'><IconStyle><scale>3</scale><Icon><href>a.png</href></Icon></IconStyle>"
    "<ListStyle><ItemIcon><state>open</state><href>o.png</href></ItemIcon></ListStyle></Style>"
    "<StyleMap id='map'><Pair><key>normal</key><styleUrl>#red</styleUrl></Pair>"
    "<Pair><key>highlight</key><Style><PolyStyle><fill>0</fill></PolyStyle></Style></Pair></"
    "StyleMap>"
    "<StyleMap id='far'><Pair><key>normal</key><styleUrl>http://example.com/far.kml#s</styleUrl>"
    "</Pair><Pair><key>highlight</key><styleUrl>#gone</styleUrl></Pair></StyleMap>"
    "<StyleMap id='nest'><Pair><key>normal</key><styleUrl>#map</styleUrl></Pair></StyleMap>"
    "<StyleMap id='ring'><Pair><key>normal</key><styleUrl>#ring2</styleUrl></Pair></StyleMap>"
    "<StyleMap id='ring2'><Pair><key>normal</key><styleUrl>#ring</styleUrl></Pair></StyleMap>";

TEST_F(StyleToolTest, EachPropertyIsShownWithWhereItComesFrom) {
  const QByteArray wide = "<Style><LineStyle><width>5</width></LineStyle></Style>";
  struct Case {
    QByteArray content;
    const char* shown;
  };
  const Case cases[] = {
      {"", "normal: default|highlight: default"},
      {"<styleUrl>#red</styleUrl>" + wide,
       "normal: inline over #red|LineStyle.color = ff0000ff (#red)|LineStyle.width = 5 (inline)|"
       "highlight: as normal"},
      // Given is given, also where it's the default.
      {"<styleUrl>#red</styleUrl><Style><LineStyle><width>1</width></LineStyle></Style>",
       "normal: inline over #red|LineStyle.color = ff0000ff (#red)|LineStyle.width = 1 (inline)|"
       "highlight: as normal"},
      {"<styleUrl>#big</styleUrl>",
       "normal: #big|IconStyle.scale = 3 (#big)|IconStyle.Icon.href = a.png (#big)|"
       "ListStyle.ItemIcon[0].state = open (#big)|ListStyle.ItemIcon[0].href = o.png (#big)|"
       "highlight: as normal"},
      {"<styleUrl>#map</styleUrl>" + wide,
       "normal: inline over style map #map > #red|"
       "LineStyle.color = ff0000ff (style map #map > #red)|LineStyle.width = 5 (inline)|"
       "highlight: inline over style map #map > inline|LineStyle.width = 5 (inline)|"
       "PolyStyle.fill = 0 (style map #map > inline)"},
      {"<styleUrl>#nest</styleUrl>",
       "normal: style map #nest > #red|LineStyle.color = ff0000ff (style map #nest > #red)|"
       "LineStyle.width = 2 (style map #nest > #red)|highlight: default"},
      {"<StyleMap><Pair><key>normal</key><styleUrl>#red</styleUrl></Pair><Pair>"
       "<key>highlight</key>" +
           wide + "</Pair></StyleMap>",
       "normal: inline style map > #red|LineStyle.color = ff0000ff (inline style map > #red)|"
       "LineStyle.width = 2 (inline style map > #red)|highlight: inline style map > inline|"
       "LineStyle.width = 5 (inline style map > inline)"},
      {"<styleUrl>#gone</styleUrl>" + wide,
       "normal: inline over failed #gone|LineStyle.width = 5 (inline)|highlight: as normal"},
      {"<styleUrl>#far</styleUrl>",
       "normal: fetching http://example.com/far.kml#s of style map #far|"
       "highlight: failed #gone of style map #far"},
      {"<styleUrl>#ring</styleUrl>", "normal: loop of style map #ring|highlight: default"},
      {"<styleUrl>root://styles#hl</styleUrl>",
       "normal: root://styles#hl|IconStyle.scale = 1.2 (root://styles#hl)|highlight: as normal"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content.toStdString());
    const QByteArray placemark = "<Placemark id='p'>" + c.content + "</Placemark>";
    const QString file = MakeFile("a.kml", InDocument(kShared + placemark));
    const Result result = Run({"style", file, "p"});
    EXPECT_EQ(0, result.status) << result.err.toStdString();
    EXPECT_EQ(QString("Placemark #p|") + c.shown, WithoutDefaults(result.out));
  }
}

TEST_F(StyleToolTest, AllFeaturesOrTheNamedOnesAreShown) {
  const QString file = MakeFile(
      "a.kml", InDocument("<Folder id='f'><Placemark id='p'><name>P</name></Placemark></Folder>"
                          "<Style id='s'/><Placemark id='q'/>"));
  const auto titles = [](const Result& result) {
    return result.out.split('\n').filter(QRegularExpression("^[A-Z]")).join('|');
  };
  EXPECT_EQ("Document|Folder #f|Placemark #p \"P\"|Placemark #q", titles(Run({"style", file})));
  const Result some = Run({"style", file, "q", "s", "f", "nix", "nix"});
  EXPECT_EQ("Folder #f|Placemark #q", titles(some));
  EXPECT_EQ(1, some.status);
  EXPECT_EQ(QString("kestan: %1: no feature has the id \"s\"\n"
                    "kestan: %1: no feature has the id \"nix\"\n")
                .arg(file),
            some.err);
  // Each field of each part is there, defaults with their values.
  const QStringList looks = Run({"style", file, "q"}).out.split("  highlight: ");
  ASSERT_EQ(2, looks.size());
  for (const char* line : {"ListStyle.maxSnippetLines = 2", "IconStyle.Icon = none",
                           "IconStyle.scale = 1", "LabelStyle.gx:text = $[name]"}) {
    EXPECT_TRUE(looks[0].contains(QString("\n    %1 (default)\n").arg(line))) << line;
  }
  EXPECT_TRUE(looks[1].contains("\n    IconStyle.scale = 1.2 (default)\n"));
}

TEST_F(StyleToolTest, JsonSaysTheSame) {
  const QString file = MakeFile(
      "a.kml",
      InDocument(kShared + QByteArray("<Placemark id='p'><name>\"a\\b&#9;c\xF0\x9F\x8C\x8D</name>"
                                      "<styleUrl>#map</styleUrl><Style><LineStyle><width>5</width>"
                                      "</LineStyle></Style></Placemark><Placemark id='q'/>")));
  const Result result = Run({"style", "--json", file, "p", "q"});
  EXPECT_EQ(0, result.status);
  QJsonParseError error;
  const QJsonObject root = QJsonDocument::fromJson(result.out.toUtf8(), &error).object();
  ASSERT_EQ(QJsonParseError::NoError, error.error) << result.out.toStdString();
  const QJsonArray features = root["features"].toArray();
  ASSERT_EQ(2, features.size());
  const QJsonObject p = features[0].toObject();
  EXPECT_EQ("Placemark", p["class"].toString());
  EXPECT_EQ(QString::fromUtf8("\"a\\b\tc\xF0\x9F\x8C\x8D"), p["name"].toString());
  EXPECT_EQ("#map", p["styleUrl"].toString());
  const auto get = [&p](const char* mode, const char* member) {
    return p[mode].toObject().value(member);
  };
  const QJsonArray sources{QJsonObject{{"from", "inline"}},
                           QJsonObject{{"from", "styleMap"}, {"map", "#map"}, {"style", "#red"}}};
  EXPECT_EQ(QJsonValue(sources), get("normal", "sources"));
  const QJsonObject normal = get("normal", "properties").toObject();
  const QJsonObject width{{"from", "inline"}, {"value", "5"}};
  const QJsonObject icon{{"from", "default"}, {"value", QJsonValue()}};
  EXPECT_EQ(QJsonValue(width), normal["LineStyle.width"]);
  EXPECT_EQ(QJsonValue(icon), normal["IconStyle.Icon"]);
  const QJsonObject fill{{"from", "styleMap"}, {"map", "#map"}, {"value", "0"}};
  EXPECT_EQ(QJsonValue(fill), get("highlight", "properties").toObject()["PolyStyle.fill"]);
}

} // namespace

} // namespace vorrel::kestan
