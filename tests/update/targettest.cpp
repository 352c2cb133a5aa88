#include "kestan/core/schema.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "tests/support/fieldlog.h"
#include "tests/update/updatetest.h"

namespace vorrel::kestan {

using UpdateTargetTest = UpdateTest;

TEST_F(UpdateTargetTest, AValueGoesToItsTargetAndBack) {
  struct Case {
    const char* document;
    const char* content; ///< Of the `Change`.
    const char* field;
    const char* before;
    const char* half;
    const char* after;
  };
  const Case cases[] = {
      {"<Placemark id=\"p\"><name>a</name></Placemark>",
       "<Placemark targetId=\"p\"><name>b</name></Placemark>", "name", "a", "a", "b"},
      // The document may be named again in front of the id.
      {"<Placemark id=\"p\"/>",
       "<Placemark targetId=\"doc.kml#p\"><name> b&amp;c </name></Placemark>", "name", "", "",
       "b&c"},
      {"<Placemark id=\"p\"/>",
       "<Placemark targetId=\"p\"><name><![CDATA[<b>]]></name></Placemark>", "name", "", "", "<b>"},
      {"<Placemark id=\"p\"/>",
       "<k:Placemark xmlns:k=\"http://www.opengis.net/kml/2.2\" targetId=\"p\"><k:name>b</k:name>"
       "</k:Placemark>",
       "name", "", "", "b"},
      {"<Placemark id=\"p\"/>", "<Placemark targetId=\"p\"><visibility>0</visibility></Placemark>",
       "visibility", "1", "1", "0"},
      {"<Folder id=\"f\"/>", "<Folder targetId=\"f\"><open>1</open></Folder>", "open", "0", "1",
       "1"},
      {"<Placemark id=\"p\"><Point><coordinates>10,20,30</coordinates></Point></Placemark>",
       "<Placemark targetId=\"p\"><Point><coordinates>20,40,0</coordinates></Point></Placemark>",
       "Point/coordinates", "10,20,30", "15,30,15", "20,40,0"},
      {"<Placemark><Point id=\"q\"><coordinates>10,20,30</coordinates></Point></Placemark>",
       "<Point targetId=\"q\"><altitudeMode>absolute</altitudeMode></Point>", "Point/altitudeMode",
       "clampToGround", "clampToGround", "absolute"},
      {"<Placemark><Point id=\"q\"/></Placemark>",
       "<Point targetId=\"q\"><gx:altitudeMode>clampToSeaFloor</gx:altitudeMode></Point>",
       "Point/altitudeMode", "clampToGround", "clampToGround", "clampToSeaFloor"},
      {"<Placemark xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><Point id=\"q\"><gx:altitudeMode>"
       "clampToSeaFloor</gx:altitudeMode></Point>"
       "</Placemark>",
       "<Point targetId=\"q\"><altitudeMode>absolute</altitudeMode></Point>", "Point/altitudeMode",
       "clampToSeaFloor", "clampToSeaFloor", "clampToSeaFloor"},
      {"<Placemark id=\"p\"><Snippet>a</Snippet></Placemark>",
       "<Placemark targetId=\"p\"><Snippet>b</Snippet></Placemark>", "Snippet/", "a", "a", "b"},
      {"<Placemark id=\"p\"><Snippet maxLines=\"2\">a</Snippet></Placemark>",
       "<Placemark targetId=\"p\"><Snippet maxLines=\"5\"/></Placemark>", "Snippet/maxLines", "2",
       "3", "5"},
      {"<Placemark id=\"p\"><TimeStamp><when>2000-01-01</when></TimeStamp></Placemark>",
       "<Placemark targetId=\"p\"><TimeStamp>2000-01-03</TimeStamp></Placemark>", "TimeStamp/when",
       "2000-01-01", "2000-01-02T00:00:00", "2000-01-03"},
      {"<Placemark id=\"p\"><Style><IconStyle><color>00ffffff</color></IconStyle></Style>"
       "</Placemark>",
       "<Placemark targetId=\"p\"><Style><IconStyle><color>ff000000</color></IconStyle></Style>"
       "</Placemark>",
       "Style/IconStyle/color", "00ffffff", "7f808080", "ff000000"},
      {"<Placemark><Style><IconStyle id=\"i\"><hotSpot x=\"0\" y=\"1\" xunits=\"pixels\" "
       "yunits=\"fraction\"/></IconStyle></Style></Placemark>",
       "<IconStyle targetId=\"i\"><hotSpot x=\"10\" y=\"0\" xunits=\"pixels\" "
       "yunits=\"fraction\"/></IconStyle>",
       "Style/IconStyle/hotSpot", "<x units=\"pixels\">0</x><y units=\"fraction\">1</y>",
       "<x units=\"pixels\">5</x><y units=\"fraction\">0.5</y>",
       "<x units=\"pixels\">10</x><y units=\"fraction\">0</y>"},
      {"<Placemark><Style><IconStyle id=\"i\"><Icon><href>a.png</href></Icon></IconStyle></Style>"
       "</Placemark>",
       "<IconStyle targetId=\"i\"><Icon>b.png</Icon></IconStyle>", "Style/IconStyle/Icon/href",
       "a.png", "a.png", "b.png"},
      {"<Placemark><Style id=\"s\"><LineStyle><width>1</width></LineStyle></Style></Placemark>",
       "<Style targetId=\"s\"><LineStyle><width>2</width></LineStyle></Style>",
       "Style/LineStyle/width", "1", "1.5", "2"},
      // Of two edits of one value the later one counts; both go back to where they began.
      {"<Placemark id=\"p\"><name>a</name></Placemark>",
       "<Placemark targetId=\"p\"><name>b</name><name>c</name></Placemark>", "name", "a", "a", "c"},
      {"<Placemark id=\"p\"><name>a</name></Placemark>",
       "<Placemark targetId=\"p\"><name>b</name></Placemark><Placemark "
       "targetId=\"p\"><name>c</name>"
       "</Placemark>",
       "name", "a", "a", "c"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    const auto object = ReadObject(QString(c.document));
    ASSERT_TRUE(object);
    const QString text = Write(*object);
    const auto update = MakeUpdate(QString("<Change>%1</Change>").arg(c.content));
    update->SetKeepEdits(true);
    update->CreateEdits(nullptr);
    EXPECT_EQ(QStringList(), TakeReports());
    EXPECT_EQ(text, Write(*object)); // no value is set yet
    struct Step {
      float fraction;
      const char* value;
    };
    const Step steps[] = {{0.5F, c.half},    {1.0F, c.after}, {0.5F, c.half},
                          {-3.0F, c.before}, {7.0F, c.after}, {0.0F, c.before}};
    for (const Step& step : steps) {
      update->ApplyEdits(step.fraction);
      EXPECT_EQ(step.value, Get(*object, c.field)) << step.fraction;
    }
  }
}

TEST_F(UpdateTargetTest, ObjectsComeAndGo) {
  struct Case {
    const char* content;
    const char* ids; ///< Of the folder's children, with their names.
  };
  const Case cases[] = {
      {"<Create><Folder targetId=\"f\"><Placemark id=\"n\"><name>x</name></Placemark></Folder>"
       "</Create>",
       "a b c n:x"},
      {"<Create><Folder targetId=\"f\"><Placemark id=\"n\" targetIndex=\"0\"/><Placemark id=\"m\" "
       "targetIndex=\"2\"/><Placemark id=\"o\" targetIndex=\"99\"/></Folder></Create>",
       "n a m b c o"},
      {"<Create><Folder targetId=\"f\"><Placemark id=\"n\" targetIdIndex=\"doc.kml#b\"/></Folder>"
       "</Create>",
       "a n b c"},
      {"<Delete><Placemark targetId=\"a\"/></Delete>", "b c"},
      {"<Delete><Placemark targetId=\"c\"/><Placemark targetId=\"a\"/></Delete>", "b"},
      {"<Delete><Placemark targetId=\"a\"><name>unread</name><Unknown/></Placemark></Delete>"
       "<Change><Placemark targetId=\"b\"><name>y</name></Placemark></Change>",
       "b:y c"},
      // Places count what is left.
      {"<Delete><Placemark targetId=\"a\"/></Delete><Create><Folder targetId=\"f\"><Placemark "
       "id=\"n\" targetIndex=\"1\"/></Folder></Create><Delete><Placemark targetId=\"b\"/></Delete>",
       "n c"},
      {"<Delete><Placemark targetId=\"a\"/></Delete><Create><Folder targetId=\"f\"><Placemark "
       "id=\"n\" targetIdIndex=\"b\"/></Folder></Create>",
       "n b c"},
      // An id that has become free is given again.
      {"<Delete><Placemark targetId=\"a\"/></Delete><Create><Folder targetId=\"f\"><Placemark "
       "id=\"a\"><name>new</name></Placemark></Folder></Create><Change><Placemark targetId=\"a\">"
       "<address>here</address></Placemark></Change>",
       "b c a:new"},
      {"<Replace><Folder targetId=\"b\" id=\"n\"/></Replace>", "a n c"},
      {"<Replace><Placemark targetId=\"b\" id=\"b\"/></Replace><Change><Placemark targetId=\"b\">"
       "<name>z</name></Placemark></Change>",
       "a b:z c"},
      // What is there already may move.
      {"<Create><Folder targetId=\"f\"><Folder id=\"n\"/></Folder></Create><Create><Folder "
       "id=\"unused\"><Placemark targetId=\"a\"/></Folder></Create>",
       "b c n"},
      {"<Create><Placemark id=\"nowhere\"/></Create>", "a b c"},
      {"<Create><Placemark targetId=\"a\"><name>x</name></Placemark></Create>", "a:x b c"},
      {"<Change/><Create/><Delete/><Replace/>", "a b c"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    const auto folder = Read<Folder>("<Folder id=\"f\"><Placemark id=\"a\"/><Placemark id=\"b\"/>"
                                     "<Placemark id=\"c\"/></Folder>");
    EXPECT_EQ(QStringList(), Apply(c.content));
    QStringList ids;
    for (int i = 0; i < folder->GetChildCount(); ++i) {
      const AbstractFeature& child = *folder->GetChild(i);
      EXPECT_EQ(i, child.GetArrayIndex());
      ids += child.GetName().isEmpty() ? child.GetId() : child.GetId() + ":" + child.GetName();
    }
    EXPECT_EQ(c.ids, ids.join(' '));
  }
}

TEST_F(UpdateTargetTest, WhatIsMadeStaysAndItsValuesGoBack) {
  const auto folder = Read<Folder>("<Folder id=\"f\"/>");
  const auto update = MakeUpdate(
      "<Create><Folder targetId=\"f\"><Placemark id=\"n\"><name>x</name><Style><LineStyle><width>3"
      "</width></LineStyle></Style><Point><coordinates>1,2,3</coordinates></Point></Placemark>"
      "</Folder></Create>");
  update->SetKeepEdits(true);
  update->Apply(nullptr, 1.0F);
  const AbstractFeature& made = *folder->GetChild(0);
  EXPECT_EQ("http://example.com/dir/doc.kml", made.GetUrl());
  EXPECT_EQ("http://example.com/dir/doc.kml", made.GetBaseUrl());
  EXPECT_EQ(2U, made.GetAccess());
  EXPECT_EQ("x", Get(made, "name"));
  EXPECT_EQ("3", Get(made, "Style/LineStyle/width"));
  EXPECT_EQ("1,2,3", Get(made, "Point/coordinates"));
  update->ApplyEdits(0.0F);
  EXPECT_EQ(&made, folder->GetChild(0));
  EXPECT_EQ("", Get(made, "name"));
  EXPECT_EQ("1", Get(made, "Style/LineStyle/width"));
}

TEST_F(UpdateTargetTest, WhatATargetPreservesStays) {
  const QString document =
      "<Folder id=\"f\" xmlns:u=\"urn:u\" u:mark=\"1\"><name u:a=\"1\">a</name><name>b</name>"
      "<u:one>text</u:one><Style u:c=\"1\"><u:two/></Style><Snippet maxLines=\"9\" u:d=\"1\">s"
      "</Snippet><Placemark id=\"p\" other=\"1\"><u:three/><Style/></Placemark></Folder>";
  const auto plain = ReadObject(document);
  const QString before = Write(*plain);
  const auto folder = ReadObject(document);
  const auto update = MakeUpdate(
      "<Change><Folder targetId=\"f\" strange=\"1\"><open more=\"1\">1</open><Unknown>x</Unknown>"
      "<Style><Nothing/></Style><Snippet maxLines=\"3\"><None/></Snippet></Folder></Change>");
  update->SetKeepEdits(true);
  update->Apply(nullptr, 1.0F);
  EXPECT_EQ(QStringList({"Unknown attribute strange=\"1\"", "Unknown element <Unknown>",
                         "Unknown element <Nothing>", "Unknown element <None>"}),
            TakeReports());
  const QString changed = Write(*folder);
  EXPECT_EQ(QString(before)
                .replace("maxLines=\"9\"", "maxLines=\"3\"")
                .replace("</name>\n\t<Snippet", "</name>\n\t<open>1</open>\n\t<Snippet"),
            changed);
  update->ApplyEdits(0.0F);
  EXPECT_EQ(before, Write(*folder));
}

TEST_F(UpdateTargetTest, WhatItMakesIsReadAsInAnyDocument) {
  const auto folder = Read<Folder>("<Folder id=\"f\"/>");
  const QString made =
      "<Placemark id=\"n\" u:mark=\"1\"><name u:a=\"1\">x</name><u:one u:b=\"2\">text</u:one>"
      "<Style><LineStyle><width>3</width><u:two/></LineStyle></Style></Placemark>";
  const auto update = ReadAt("http://example.com/dir/update.kml",
                             "<Update xmlns:u=\"urn:u\"><targetHref>doc.kml</targetHref><Create>"
                             "<Folder targetId=\"f\">" +
                                 made + "</Folder></Create></Update>");
  static_cast<Update&>(*update).Apply(nullptr, 1.0F);
  EXPECT_EQ(QStringList({"Unknown element <u:one>", "Unknown element <u:two>"}), TakeReports());
  const auto plain = ReadObject("<Folder id=\"f\" xmlns:u=\"urn:u\">" + made + "</Folder>");
  EXPECT_EQ(Write(*plain), Write(*folder));
}

TEST_F(UpdateTargetTest, EachValueIsToldOnce) {
  const auto folder = Read<Folder>("<Folder id=\"f\"><Placemark id=\"a\"/></Folder>");
  FieldLog log(*folder);
  Apply("<Change><Folder targetId=\"f\"><name>x</name><open>1</open></Folder></Change>");
  EXPECT_EQ("name open", log.take());
  Apply("<Delete><Placemark targetId=\"a\"/></Delete>");
  EXPECT_EQ("AbstractFeature", log.take());
  Apply("<Create><Folder targetId=\"f\"><Placemark id=\"b\"/></Folder></Create>");
  EXPECT_EQ("AbstractFeature", log.take());
  Apply("<Replace><Placemark targetId=\"b\" id=\"c\"/></Replace>");
  EXPECT_EQ("AbstractFeature", log.take());
}

} // namespace vorrel::kestan
