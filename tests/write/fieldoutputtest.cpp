#include "kestan/core/schema.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/convert.h"
#include "tests/support/kmltest.h"
#include "tests/support/xml.h"
#include "tests/write/sampleschema.h"

namespace vorrel::kestan {

class FieldOutputTest : public KmlTest {
protected:
  static RefPtr<Sample> Make() {
    const auto object = Sample::GetClassSchema().CreateInstance(KmlId("s", "u"), "", nullptr);
    return RefPtr<Sample>(static_cast<Sample*>(object.get()));
  }
  static const SampleSchema& Fields() { return SampleSchema::GetSingleton(); }
};

TEST_F(FieldOutputTest, ElementsAndAttributesCarryThePrefixOfTheirNamespace) {
  const auto sample = Make();
  Fields().label.SetTypedObject(*sample, "l");
  Fields().note.SetTypedObject(*sample, "n");
  const QString xml = Write(*sample);
  // The attribute that was declared last stands first, the inherited id last.
  EXPECT_TRUE(xml.contains("<gx:Sample kml:note=\"n\" label=\"l\" ")) << xml.toStdString();
  EXPECT_TRUE(xml.contains("id=\"s\">\n")) << xml.toStdString();
  EXPECT_TRUE(xml.endsWith("</gx:Sample>\n</kml>\n")) << xml.toStdString();
  EXPECT_EQ(QString(), FindXmlError(xml.toUtf8()));
}

TEST_F(FieldOutputTest, ScreenPositionsAreAttributesOfAnEmptyElement) {
  const auto sample = Make();
  LegacyScreenVec spot;
  spot.x = 0.5;
  spot.y = -20;
  spot.xunits = LegacyScreenVec::kFraction;
  spot.yunits = LegacyScreenVec::kInsetPixels;
  Fields().spot.SetTypedObject(*sample, spot);
  sample->SetUnknownFieldAttrs(Fields().spot, {{"x", "7"}, {"more", "<"}}, nullptr);
  EXPECT_TRUE(Write(*sample).contains("\t<gx:spot x=\"0.5\" y=\"-20\" xunits=\"fraction\" "
                                      "yunits=\"insetPixels\" more=\"&lt;\"/>\n"))
      << Write(*sample).toStdString();
}

TEST_F(FieldOutputTest, ReferencesKeepTheTextOfTheFile) {
  struct Case {
    QString raw;
    const char* written;
  };
  const Case cases[] = {{QString(), "a?b&amp;c"},
                        {"", ""},
                        {"x?y&amp;z", "x?y&amp;z"},
                        {"x?y&z<", "x?y&amp;z&lt;"}};
  for (const Case& c : cases) {
    const auto sample = Make();
    Fields().reference.SetTypedObject(*sample, "a?b&c");
    sample->raw_ = c.raw;
    EXPECT_EQ(QString("<gx:reference>%1</gx:reference>").arg(c.written),
              Element(Write(*sample), "gx:reference"));
  }
}

TEST_F(FieldOutputTest, FieldsThatAreNotWrittenAppearWithTheirUnknownAttributes) {
  const auto sample = Make();
  Fields().secret.SetTypedObject(*sample, 5);
  EXPECT_FALSE(Write(*sample).contains("secret"));
  sample->SetUnknownFieldAttrs(Fields().secret, {{"a", "1"}}, nullptr);
  EXPECT_TRUE(Write(*sample).contains("<gx:secret a=\"1\">5</gx:secret>"));
}

TEST_F(FieldOutputTest, AltitudeModesReachOneOfTwoElements) {
  struct Case {
    int mode;
    QString plain;
    QString extension;
  };
  const Case cases[] = {{0, "", ""},
                        {1, "relativeToGround", ""},
                        {2, "absolute", ""},
                        {3, "absolute", "absoluteAboveGround"},
                        {4, "", "clampToSeaFloor"},
                        {5, "", "relativeToSeaFloor"},
                        {9, "", ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.mode);
    const auto sample = Make();
    Fields().altitudeMode.SetTypedObject(*sample, c.mode);
    const QString xml = Write(*sample);
    const QString plain = QString("<altitudeMode>%1</altitudeMode>").arg(c.plain);
    const QString extension = QString("<gx:altitudeMode>%1</gx:altitudeMode>").arg(c.extension);
    EXPECT_EQ(c.plain.isEmpty() ? QString() : plain, Element(xml, "altitudeMode"));
    EXPECT_EQ(c.extension.isEmpty() ? QString() : extension, Element(xml, "gx:altitudeMode"));
  }
}

TEST_F(FieldOutputTest, AltitudeModeWithAttributesKeepsBoth) {
  const auto placemark = Read<Placemark>(
      "<Placemark xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><Point>"
      "<altitudeMode a=\"1\">clampToGround</altitudeMode>"
      "<gx:altitudeMode>relativeToSeaFloor</gx:altitudeMode></Point></Placemark>");
  ASSERT_TRUE(placemark);
  const QString xml = Write(*placemark);
  EXPECT_TRUE(xml.contains("<altitudeMode a=\"1\">relativeToGround</altitudeMode>"))
      << xml.toStdString();
  EXPECT_TRUE(xml.contains("<gx:altitudeMode>relativeToSeaFloor</gx:altitudeMode>")) << xml.toStdString();
  const auto again = ReadObject(xml);
  ASSERT_TRUE(again);
  EXPECT_EQ(xml, Write(*again));
}

TEST_F(FieldOutputTest, ArraysAndLists) {
  const auto sample = Make();
  Fields().coords.fromString(*sample, nullptr, nullptr, "8.5 47.25 400", -1, nullptr);
  Fields().coords.fromString(*sample, nullptr, nullptr, "9 48 0", -1, nullptr);
  Fields().angles.fromString(*sample, nullptr, nullptr, "0.5 -1 2", -1, nullptr);
  Fields().words.fromString(*sample, nullptr, nullptr, "a <b> c&d", -1, nullptr);
  const QString xml = Write(*sample);
  EXPECT_TRUE(xml.contains("\t<gx:coord>8.5 47.25 400</gx:coord>\n"
                           "\t<gx:coord>9 48 0</gx:coord>\n"
                           "\t<gx:angles>0.5 -1 2</gx:angles>\n"
                           "\t<gx:words>a &lt;b&gt; c&amp;d\t</gx:words>\n"))
      << xml.toStdString();
}

TEST_F(FieldOutputTest, NamedChildrenStandInAnElementOfTheirOwn) {
  const auto sample = Make();
  Fields().part.set(*sample, Make().get(), -1);
  EXPECT_TRUE(Write(*sample).contains("\t<gx:part>\n\t\t<gx:Sample kml:id=\"s\">\n"))
      << Write(*sample).toStdString();
  Fields().part.set(*sample, nullptr, -1);
  EXPECT_FALSE(Write(*sample).contains("<gx:part"));
  sample->SetUnknownFieldAttrs(Fields().part, {{"a", "1"}}, nullptr);
  EXPECT_TRUE(Write(*sample).contains("\t<gx:part a=\"1\">\n\t</gx:part>\n"));
}

TEST_F(FieldOutputTest, CoordinatesEndWithABlankAndStayWhenEmpty) {
  const auto line = ReadObject(QString("<LineString><coordinates>1,2 3,4,5</coordinates></LineString>"));
  ASSERT_TRUE(line);
  EXPECT_EQ("<coordinates>\n\t\t1,2,0 3,4,5 \n\t</coordinates>", Element(Write(*line), "coordinates"));
  const auto empty = ReadObject(QString("<LineString/>"));
  ASSERT_TRUE(empty);
  EXPECT_EQ("<coordinates>\n\t</coordinates>", Element(Write(*empty), "coordinates"));
}

TEST_F(FieldOutputTest, AnObjectWithOneTextIsWrittenOnOneLine) {
  const auto placemark =
      Read<Placemark>("<Placemark><Snippet maxLines=\"3\">a &amp; b</Snippet></Placemark>");
  ASSERT_TRUE(placemark);
  EXPECT_TRUE(Write(*placemark).contains("\t<Snippet maxLines=\"3\">a &amp; b</Snippet>\n"));
}

} // namespace vorrel::kestan
