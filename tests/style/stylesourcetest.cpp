#include "kestan/style/stylesource.h"
#include "kestan/core/schema.h"
#include "tests/style/styletest.h"

namespace vorrel::kestan {

using StyleSourceTest = StyleTest;

namespace {

/// True when the two sub-styles, of which the second may be null, hold the same in the field.
bool HaveSame(const Field& field, const SchemaObject& a, const SchemaObject* b) {
  return b && (field.GetObjSchema() ? field.getCount(a) == field.getCount(*b) &&
                                          !field.GetObject(a, 0) == !field.GetObject(*b, 0)
                                    : field.toString(a, -1) == field.toString(*b, -1));
}

/// Each value of a look is that of the style that is said to give it, or else the default.
void ExpectConsistent(const AbstractFeature& feature, int mode) {
  const StyleSources sources(feature, mode);
  ASSERT_EQ(feature.getRenderStyle(mode), sources.GetStyle());
  ASSERT_NE(sources.begin(), sources.end());
  for (const Field* part : Style::GetClassSchema().GetObjectFields()) {
    const SchemaObject* subStyle = sources.GetSubStyle(*part);
    if (part->HasFlag(Field::kNoWrite) || !subStyle)
      continue;
    const RefPtr<SchemaObject> fresh =
        subStyle->GetSchema().CreateInstance(KmlId(), QString(), nullptr);
    for (const Field* field : subStyle->GetSchema().GetSerializedFields()) {
      const StyleSource* source = sources.Find(*part, *field);
      const SchemaObject* origin = source ? part->GetObject(*source->style, -1) : fresh.get();
      EXPECT_TRUE(HaveSame(*field, *subStyle, origin)) << field->GetTag().toStdString();
    }
  }
}

} // namespace

TEST_F(StyleSourceTest, WhatIsSaidToGiveAValueGivesIt) {
  const QString shared =
      "<Style id='a'><LineStyle><color>ff0000ff</color><width>3</width></LineStyle>"
      "<IconStyle><Icon><href>a.png</href></Icon></IconStyle></Style>"
      "<Style id='b'><PolyStyle><fill>0</fill></PolyStyle><BalloonStyle><text>t</text>"
      "</BalloonStyle><ListStyle><ItemIcon><href>i.png</href></ItemIcon></ListStyle></Style>"
      "<StyleMap id='both'><Pair><key>normal</key><styleUrl>#a</styleUrl></Pair>"
      "<Pair><key>highlight</key><styleUrl>#b</styleUrl></Pair></StyleMap>"
      "<StyleMap id='one'><Pair><key>normal</key><styleUrl>#both</styleUrl></Pair></StyleMap>"
      "<StyleMap id='ring'><Pair><key>normal</key><styleUrl>#ring</styleUrl></Pair></StyleMap>"
      "<StyleMap id='lost'><Pair><key>normal</key><styleUrl>#gone</styleUrl></Pair></StyleMap>";
  const QString look = "<LineStyle><width>7</width></LineStyle><IconStyle><scale>2</scale>"
                       "</IconStyle><LabelStyle><color>ff000001</color></LabelStyle>";
  const QString map = "<StyleMap><Pair><key>normal</key>%1</Pair></StyleMap>";
  const QStringList inlines = {"",
                               "<Style>" + look + "</Style>",
                               map.arg("<Style>" + look + "</Style>"),
                               map.arg("<styleUrl>#b</styleUrl>"),
                               map.arg("<styleUrl>#ring</styleUrl>"),
                               map.arg("<styleUrl>#gone</styleUrl>")};
  const QStringList urls = {"",      "#a",    "#both",     "#one",
                            "#ring", "#lost", "far.kml#s", "root://styles#hl"};
  for (const QString& inlineStyle : inlines) {
    for (const QString& url : urls) {
      SCOPED_TRACE((url + inlineStyle).toStdString());
      const QString reference = url.isEmpty() ? QString() : "<styleUrl>" + url + "</styleUrl>";
      const auto document = ReadLocal(InDocument(shared + "<Placemark><name>p</name>" + reference +
                                                 inlineStyle + "</Placemark>"));
      const AbstractFeature* feature = Find(*document, "p");
      ExpectConsistent(*feature, kStyleNormal);
      ExpectConsistent(*feature, kStyleHighlight);
    }
  }
}

TEST_F(StyleSourceTest, AnOldNameOfAColorHidesTheNewOneBelowIt) {
  const auto document = ReadLocal(InDocument(
      "<Style id='s'><BalloonStyle><bgColor>ff000001</bgColor></BalloonStyle></Style>"
      "<Placemark><name>p</name><styleUrl>#s</styleUrl>"
      "<Style><BalloonStyle><color>ff000002</color></BalloonStyle></Style></Placemark>"));
  const AbstractFeature* feature = Find(*document, "p");
  const StyleSources sources(*feature, kStyleNormal);
  const Schema& schema = Style::GetClassSchema();
  const Schema* balloonSchema = nullptr;
  const Field* part = schema.FindField("BalloonStyle", Namespace::kKml, &balloonSchema);
  ASSERT_TRUE(part && balloonSchema);
  const StyleSource* source =
      sources.Find(*part, *balloonSchema->FindField("color", Namespace::kKml, nullptr));
  ASSERT_TRUE(source);
  EXPECT_EQ(feature->GetInlineStyleSelector(), source->selector);
  EXPECT_EQ(nullptr,
            sources.Find(*part, *balloonSchema->FindField("bgColor", Namespace::kKml, nullptr)));
}

} // namespace vorrel::kestan
