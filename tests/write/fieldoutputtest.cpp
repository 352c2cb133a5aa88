#include "kestan/core/schema.h"
#include "kestan/feature/placemark.h"
#include "kestan/style/colorstyleschema.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/iconstyleschema.h"
#include "kestan/style/style.h"
#include "tests/support/kmltest.h"
#include "tests/support/xml.h"
#include "tests/write/sampleschema.h"

#include <limits>

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
  Fields().angles.fromString(*sample, nullptr, nullptr, "0.5 -1 2", -1, nullptr);
  Fields().part.set(*sample, Make().get(), -1);
  QString xml = Write(*sample);
  EXPECT_EQ(QString(), FindXmlError(xml.toUtf8()));
  // The attribute that was declared last stands first, the inherited id last.
  xml.remove(0, xml.indexOf("<gx:Sample"));
  EXPECT_EQ("<gx:Sample kml:note=\"n\" label=\"l\" kml:id=\"s\">\n"
            "\t<gx:reference></gx:reference>\n"
            "\t<gx:angles>0.5 -1 2</gx:angles>\n"
            "\t<gx:part>\n\t\t<gx:Sample kml:id=\"s\">\n"
            "\t\t\t<gx:reference></gx:reference>\n"
            "\t\t</gx:Sample>\n\t</gx:part>\n</gx:Sample>\n</kml>\n",
            xml);
}

TEST_F(FieldOutputTest, ReferencesKeepTheTextOfTheFile) {
  struct Case {
    QString raw;
    const char* written;
  };
  const Case cases[] = {
      {QString(), "a?b&amp;c"}, {"", ""}, {"x?y&amp;z", "x?y&amp;z"}, {"x?y&z<", "x?y&amp;z&lt;"}};
  for (const Case& c : cases) {
    const auto sample = Make();
    Fields().reference.SetTypedObject(*sample, "a?b&c");
    sample->raw_ = c.raw;
    EXPECT_EQ(QString("<gx:reference>%1</gx:reference>").arg(c.written),
              Element(Write(*sample), "gx:reference"));
  }
}

TEST_F(FieldOutputTest, NumbersThatAreNotFiniteAreNotWritten) {
  for (const float value :
       {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity()}) {
    const auto placemark = Read<Placemark>(
        "<Placemark><gx:balloonVisibility>1</gx:balloonVisibility><Style><IconStyle>"
        "<scale>2</scale><heading a=\"1\">3</heading></IconStyle></Style>"
        "</Placemark>");
    ASSERT_TRUE(placemark);
    auto* const icon = static_cast<Style*>(placemark->GetInlineStyleSelector())->GetIconStyle();
    IconStyleSchema::GetSingleton().scale.SetTypedObject(*icon, value);
    IconStyleSchema::GetSingleton().heading.SetTypedObject(*icon, value);
    const QString written = Write(*placemark);
    EXPECT_FALSE(written.contains("inf") || written.contains("nan"));
    EXPECT_EQ(written, Write(*Read<Placemark>(written)));
    EXPECT_TRUE(written.contains("<heading a=\"1\">"));
  }
}

TEST_F(FieldOutputTest, EnumeratorsWithoutANameAreNotWritten) {
  const auto placemark = Read<Placemark>("<Placemark><Style><IconStyle><scale>2</scale></IconStyle>"
                                         "</Style></Placemark>");
  auto* const icon = static_cast<Style*>(placemark->GetInlineStyleSelector())->GetIconStyle();
  ColorStyleSchema::GetSingleton().colorMode.SetTypedObject(*icon, 7);
  const QString written = Write(*placemark);
  EXPECT_FALSE(written.contains("colorMode")) << written.toStdString();
  EXPECT_EQ(written, Write(*Read<Placemark>(written)));
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
    const char* read;
    const char* written;
  };
  const Case cases[] = {
      {"<altitudeMode>clampToGround</altitudeMode>", ""},
      {"<altitudeMode>relativeToGround</altitudeMode>",
       "<altitudeMode>relativeToGround</altitudeMode>"},
      {"<gx:altitudeMode>absolute</gx:altitudeMode>", "<altitudeMode>absolute</altitudeMode>"},
      {"<gx:altitudeMode>absoluteAboveGround</gx:altitudeMode>",
       "<altitudeMode>absolute</altitudeMode>"
       "<gx:altitudeMode>absoluteAboveGround</gx:altitudeMode>"},
      {"<gx:altitudeMode>clampToSeaFloor</gx:altitudeMode><altitudeMode>absolute</altitudeMode>",
       "<altitudeMode>absolute</altitudeMode><gx:altitudeMode>clampToSeaFloor</gx:altitudeMode>"},
      {"<gx:altitudeMode>clampToSeaFloor</gx:altitudeMode>",
       "<gx:altitudeMode>clampToSeaFloor</gx:altitudeMode>"},
      {"<altitudeMode a=\"1\">clampToGround</altitudeMode>"
       "<gx:altitudeMode>relativeToSeaFloor</gx:altitudeMode>",
       "<altitudeMode a=\"1\">relativeToGround</altitudeMode>"
       "<gx:altitudeMode>relativeToSeaFloor</gx:altitudeMode>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.read);
    const QString xml = RoundTrip(QString("<Point xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>%1"
                                          "<coordinates>1,2</coordinates></Point>")
                                      .arg(c.read));
    EXPECT_TRUE(Squeezed(xml).contains(QString("<Point>%1<coordinates>").arg(c.written)))
        << xml.toStdString();
  }
}

} // namespace vorrel::kestan
