#include "kestan/host/pump.h"
#include "tests/core/probeschema.h"
#include "tests/support/workers.h"
#include "tests/update/updatetest.h"

namespace vorrel::kestan {

namespace {

QString Change(const QString& type, const QString& id, const QString& values) {
  return QStringLiteral("<Change><%1 targetId=\"%2\">%3</%1></Change>").arg(type, id, values);
}

} // namespace

using UpdateEditTest = UpdateTest;

// Half on its way, at its end, and back: then the document is again what it was, to the byte.
TEST_F(UpdateEditTest, AChangeGoesToItsEndAndBack) {
  struct Case {
    const char* type; ///< Of the target, in the document and in the update.
    const char* before;
    const char* change;
    const char* field; ///< Of which the values follow.
    const char* half;
    const char* after;
  };
  const Case cases[] = {
      {"Probe", "<count>1</count>", "<count>2</count>", "count", "1", "2"},
      {"Probe", "<count>-1</count>", "<count>-2</count>", "count", "-1", "-2"},
      {"Probe", "<count>-10</count>", "<count>10</count>", "count", "0", "10"},
      {"Probe", "<mask>10</mask>", "<mask>4</mask>", "mask", "7", "4"},
      {"Probe", "<mask>0</mask>", "<mask>4294967295</mask>", "mask", "2147483647", "4294967295"},
      {"Probe", "<port>65535</port>", "<port>0</port>", "port", "32767", "0"},
      {"Probe", "<size>-9223372036854775807</size>", "<size>9223372036854775807</size>", "size",
       "0", "9223372036854775807"},
      {"Probe", "<flag>0</flag>", "<flag>1</flag>", "flag", "1", "1"},
      {"Probe", "<flag>1</flag>", "<flag>0</flag>", "flag", "1", "0"},
      {"Probe", "<ratio>1</ratio>", "<ratio>-2</ratio>", "ratio", "-0.5", "-2"},
      {"Probe", "<angle>1</angle>", "<angle>2</angle>", "angle", "1.5", "2"},
      {"Probe", "<axis>1 2 3</axis>", "<axis>3 0 3</axis>", "axis", "2,1,3", "3,0,3"},
      {"Probe", "<place>10,20,0</place>", "<place>20,10,100</place>", "place", "15,15,50",
       "20,10,100"},
      {"Probe", "<plain>old</plain>", "<plain>new</plain>", "plain", "old", "new"},
      {"Probe", "<tint>00ff00ff</tint>", "<tint>ffff0080</tint>", "tint", "7fff00bf", "ffff0080"},
      {"Probe", "<moment>2000-01-01T00:00:00Z</moment>", "<moment>2000-01-01T00:00:10Z</moment>",
       "moment", "2000-01-01T00:00:05Z", "2000-01-01T00:00:10Z"},
      {"Probe", "<int>1</int><int>2</int>", "<int>3</int><int>4</int>", "int", "stored", "1 2 3 4"},
      {"Probe", "<words>a b</words>", "<words>x</words><words>y z</words>", "words", "stored",
       "y z"},
      {"Probe", "<fix>180 90 0</fix><fix>nowhere</fix>", "<fix>-180 0 0</fix>", "fix", "stored",
       "1,0.5,0 0,0,0 -1,0,0"},
      {"Probe", "", "<doubles>1 2</doubles><int>1</int><doubles>3</doubles>", "doubles", "stored",
       "3"},
      {"Placemark", "", "<name> b&amp;c </name>", "name", "", "b&c"},
      {"Placemark", "<name>a</name>", "<name><![CDATA[<b>]]></name>", "name", "a", "<b>"},
      {"Placemark", "<name>a</name>",
       "<k:name xmlns:k=\"http://www.opengis.net/kml/2.2\">b</k:name>", "name", "a", "b"},
      {"Placemark", "<name u:a=\"1\">a</name><name>b</name><name/>", "<name>c</name>", "name", "",
       "c"},
      {"Placemark", "", "<visibility>0</visibility>", "visibility", "1", "0"},
      {"Placemark", "<visibility>1</visibility><visibility>0</visibility>",
       "<visibility>1</visibility>", "visibility", "1", "1"},
      {"Folder", "", "<open>1</open>", "open", "1", "1"},
      {"Placemark", "<snippet>a</snippet>", "<snippet>b</snippet>", "snippet", "a", "b"},
      {"Placemark", "<Snippet maxLines=\"2\">a</Snippet>", "<Snippet maxLines=\"5\">b</Snippet>",
       "Snippet/maxLines", "3", "5"},
      {"Placemark", "<TimeStamp><when>2000-01-01</when></TimeStamp>",
       "<TimeStamp>2000-01-03</TimeStamp>", "TimeStamp/when", "2000-01-02T00:00:00", "2000-01-03"},
      {"Placemark", "<TimeStamp><when>once</when></TimeStamp>",
       "<TimeStamp><when>2000</when></TimeStamp>", "TimeStamp/when", "", "2000"},
      {"Placemark", "<TimeSpan><begin>2000</begin><begin>then</begin></TimeSpan>",
       "<TimeSpan><begin>2001</begin></TimeSpan>", "TimeSpan/begin", "", "2001"},
      {"Placemark", "<TimeStamp u:a=\"1\"/>", "<TimeStamp><when>2000</when></TimeStamp>",
       "TimeStamp/when", "", "2000"},
      {"Placemark", "<Point><coordinates>10,20,30</coordinates></Point>",
       "<Point><coordinates>20,40,0</coordinates></Point>", "Point/coordinates", "15,30,15",
       "20,40,0"},
      {"Placemark", "<Point><coordinates>here</coordinates></Point>",
       "<Point><coordinates>20,40</coordinates></Point>", "Point/coordinates", "10,20,0",
       "20,40,0"},
      {"Placemark", "<Point><gx:drawOrder>0</gx:drawOrder></Point>",
       "<Point><gx:drawOrder>4</gx:drawOrder></Point>", "Point/drawOrder", "2", "4"},
      {"Placemark", "<Point/>", "<Point><gx:drawOrder>4</gx:drawOrder></Point>", "Point/drawOrder",
       "2", "4"},
      {"Placemark", "<Point/>", "<Point><altitudeMode>absolute</altitudeMode></Point>",
       "Point/altitudeMode", "clampToGround", "absolute"},
      {"Placemark", "<Point><altitudeMode>up</altitudeMode></Point>",
       "<Point><altitudeMode>absolute</altitudeMode></Point>", "Point/altitudeMode",
       "clampToGround", "absolute"},
      {"Placemark", "<Point><altitudeMode>absolute</altitudeMode></Point>",
       "<Point><gx:altitudeMode>clampToSeaFloor</gx:altitudeMode></Point>", "Point/altitudeMode",
       "absolute", "clampToSeaFloor"},
      {"Placemark", "<Point/>",
       "<Point><gx:altitudeMode>clampToSeaFloor</gx:altitudeMode><altitudeMode>absolute</"
       "altitudeMode></Point>",
       "Point/altitudeMode", "clampToGround", "clampToSeaFloor"},
      {"Placemark",
       "<Point><altitudeMode>absolute</altitudeMode><gx:altitudeMode>clampToSeaFloor</"
       "gx:altitudeMode></Point>",
       "<Point><gx:altitudeMode>relativeToSeaFloor</"
       "gx:altitudeMode><altitudeMode>relativeToGround</altitudeMode></Point>",
       "Point/altitudeMode", "clampToSeaFloor", "relativeToSeaFloor"},
      {"LineString", "<coordinates>0,0,0 10,20,30</coordinates>",
       "<coordinates>10,0,0 20,40,0</coordinates>", "coordinates", "5,0,0 15,30,15",
       "10,0,0 20,40,0"},
      {"LineString", "<coordinates>0,0,0 10,0,0</coordinates>",
       "<coordinates>0,10,0 20,10,0 40,10,0</coordinates>", "coordinates", "0,5,0 15,5,0 25,5,0",
       "0,10,0 20,10,0 40,10,0"},
      {"LineString", "<coordinates>0,10,0 20,10,0 40,10,0</coordinates>",
       "<coordinates>0,0,0 10,0,0</coordinates>", "coordinates", "0,5,0 15,5,0 25,5,0",
       "0,0,0 10,0,0"},
      {"LineString", "<coordinates>10,0,0</coordinates>",
       "<coordinates>20,0,0 30,0,0 40,0,0</coordinates>", "coordinates", "15,0,0 20,0,0 25,0,0",
       "20,0,0 30,0,0 40,0,0"},
      {"LineString", "<coordinates></coordinates>", "<coordinates>1,1,1 2,2,2 3,3,3</coordinates>",
       "coordinates", "", "1,1,1 2,2,2 3,3,3"},
      {"LineString", "<coordinates>somewhere</coordinates>", "<coordinates>1,1,1</coordinates>",
       "coordinates", "", "1,1,1"},
      {"LineString", "<coordinates>1,1,1 2,2,2</coordinates>", "<coordinates></coordinates>",
       "coordinates", "1,1,1 2,2,2", ""},
      {"LineString", "<coordinates type=\"polyline\">1,2 4,4</coordinates>",
       "<coordinates type=\"polyline\">3,4 8,8</coordinates>", "coordinates", "3,2,0 6,6,0",
       "4,3,0 8,8,0"},
      {"LinearRing",
       "<gx:hiddenEdgeList>0</gx:hiddenEdgeList><coordinates>0,0 1,0 1,1 0,0</coordinates>",
       "<gx:hiddenEdgeList>1 2</gx:hiddenEdgeList>", "hiddenEdgeList", "stored", "1 2"},
      {"Style", "<LineStyle/>", "<LineStyle><width>2</width><color>ff000000</color></LineStyle>",
       "LineStyle/width", "1.5", "2"},
      {"Style", "<LineStyle><width>1</width></LineStyle>",
       "<LineStyle><width>2</width></LineStyle>", "LineStyle/width", "1.5", "2"},
      {"Style", "<IconStyle><color>00ffffff</color></IconStyle>",
       "<IconStyle><color>ff000000</color><scale>3</scale></IconStyle>", "IconStyle/color",
       "7f808080", "ff000000"},
      {"Style",
       "<IconStyle><hotSpot x=\"0\" y=\"1\" xunits=\"pixels\" yunits=\"fraction\"/></IconStyle>",
       "<IconStyle><hotSpot x=\"10\" y=\"0\" xunits=\"pixels\" yunits=\"fraction\"/></IconStyle>",
       "IconStyle/hotSpot", "<x units=\"pixels\">5</x><y units=\"fraction\">0.5</y>",
       "<x units=\"pixels\">10</x><y units=\"fraction\">0</y>"},
      {"Style", "<IconStyle/>", "<IconStyle><hotSpot x=\"10\"/></IconStyle>", "IconStyle/scale",
       "1", "1"},
      {"Style", "<IconStyle><Icon><href>a.png</href></Icon></IconStyle>",
       "<IconStyle><Icon>b.png</Icon></IconStyle>", "IconStyle/Icon/href", "a.png", "b.png"},
      {"Style", "<IconStyle><Icon><href>a.png?x=1&amp;y=2</href></Icon></IconStyle>",
       "<IconStyle><Icon><gx:x>8</gx:x><w>4</w><refreshMode>onInterval</refreshMode></Icon></"
       "IconStyle>",
       "IconStyle/Icon/href", "a.png?x=1&y=2", "a.png?x=1&y=2"},
      {"Style",
       "<IconStyle><Icon><href>root://icons/palette-3.png</href><gx:x>32</gx:x></Icon></IconStyle>",
       "<IconStyle><Icon><href>c.png?w=3</href></Icon></IconStyle>", "IconStyle/Icon/href",
       "root://icons/palette-3.png", "c.png?w=3"},
      {"Style", "<BalloonStyle><color>ff0000ff</color></BalloonStyle>",
       "<BalloonStyle><bgColor>ff00ff00</bgColor><text>t</text></BalloonStyle>",
       "BalloonStyle/bgColor", "ff80ff80", "ff00ff00"},
      {"Style", "<ListStyle><listItemType>strange</listItemType></ListStyle>",
       "<ListStyle><listItemType>checkHideChildren</listItemType></ListStyle>",
       "ListStyle/listItemType", "check", "checkHideChildren"},
      {"Placemark", "<Camera><longitude>5</longitude></Camera>",
       "<Camera><longitude>7</longitude><tilt>4</tilt></Camera>", "Camera/longitude", "6", "7"},
      {"Placemark", "<LookAt><range>far</range><tilt>500</tilt></LookAt>",
       "<LookAt><range>7</range><tilt>4</tilt></LookAt>", "LookAt/range", "3.55", "7"},
      {"NetworkLink", "<Link/>",
       "<Link><refreshInterval>8</refreshInterval><viewFormat/><href>b</href></Link>",
       "Link/refreshInterval", "6", "8"},
      {"Placemark", "<name>a</name>", "<name>b</name><name>c</name>", "name", "a", "c"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.before) + " to " + c.change);
    const auto target = ReadObject(
        QStringLiteral(
            "<%1 id=\"t\" xmlns:u=\"urn:u\" xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">"
            "%2</%1>")
            .arg(QLatin1String(c.type), QLatin1String(c.before)));
    ASSERT_TRUE(target);
    const QString text = Write(*target);
    const QString value = Get(*target, c.field);
    const auto update = MakeUpdate(Change(c.type, "doc.kml#t", c.change));
    update->SetKeepEdits(true);
    update->CreateEdits(nullptr);
    EXPECT_EQ(QStringList(), TakeReports());
    const QString created = Write(*target); // an array of values is stored at once
    EXPECT_EQ(QLatin1String(c.half) == QLatin1String("stored"), created != text);
    const QString half = created == text ? QString(c.half) : QString(c.after);
    struct Step {
      float fraction;
      QString value;
    };
    const Step steps[] = {
        {0.5F, half}, {1.0F, c.after}, {0.5F, half}, {-3.0F, value}, {7.0F, c.after}};
    for (const Step& step : steps) {
      update->ApplyEdits(step.fraction);
      EXPECT_EQ(step.value, Get(*target, c.field)) << step.fraction;
    }
    update->ApplyEdits(0.0F);
    EXPECT_EQ(text, Write(*target));
  }
}

TEST_F(UpdateEditTest, EditsGoAfterTheFirstUseUnlessTheyAreKept) {
  const auto probe = ReadObject(QString("<Probe id=\"p\"><count>1</count></Probe>"));
  const auto update = MakeUpdate(Change("Probe", "p", "<count>5</count>"));
  update->CreateEdits(nullptr);
  EXPECT_EQ(1, update->GetEditCount());
  update->ApplyEdits(1.0F);
  EXPECT_EQ(0, update->GetEditCount());
  update->ApplyEdits(0.0F);
  EXPECT_EQ("5", Get(*probe, "count"));

  update->SetKeepEdits(true);
  update->Apply(nullptr, 1.0F);
  update->CreateEdits(nullptr);
  EXPECT_EQ(2, update->GetEditCount());
  update->SetKeepEdits(false);
  update->ApplyEdits(0.5F);
  EXPECT_EQ(0, update->GetEditCount());
}

TEST_F(UpdateEditTest, AChangeByAnybodyElseLeavesAnEditAlone) {
  const auto probe = Read<Probe>("<Probe id=\"p\"><count>1</count></Probe>");
  const auto update = MakeUpdate(Change("Probe", "p", "<count>5</count>"));
  update->SetKeepEdits(true);
  update->Apply(nullptr, 0.5F);
  ProbeSchema::GetSingleton().count.SetTypedObject(*probe, 100);
  update->ApplyEdits(0.5F);
  EXPECT_EQ("3", Get(*probe, "count"));
}

TEST_F(UpdateEditTest, AWorkerHasTheMainThreadApplyTheLastFraction) {
  const auto probe = ReadObject(QString("<Probe id=\"p\"><size>0</size></Probe>"));
  const auto update = MakeUpdate(Change("Probe", "p", "<size>100</size>"));
  update->SetKeepEdits(true);
  update->CreateEdits(nullptr);
  {
    Workers workers(1, [&](int) {
      update->ApplyEdits(0.25F);
      update->ApplyEdits(0.75F);
    });
    workers.Finish();
    EXPECT_EQ("0", Get(*probe, "size"));
    Pump::Run(1.0);
    EXPECT_EQ("75", Get(*probe, "size"));
  }
  {
    // What the main thread does itself is newer than what waits.
    Workers workers(1, [&](int) { update->ApplyEdits(0.25F); });
    workers.Finish();
    update->ApplyEdits(0.5F);
    Pump::Run(1.0);
    EXPECT_EQ("50", Get(*probe, "size"));
  }
}

} // namespace vorrel::kestan
