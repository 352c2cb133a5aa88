#include "kestan/core/schema.h"
#include "kestan/style/colorstyleschema.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/iconstyleschema.h"
#include "tests/support/kmltest.h"
#include "tests/support/xml.h"

#include <limits>

namespace vorrel::kestan {

using FieldOutputTest = KmlTest;

TEST_F(FieldOutputTest, NumbersThatAreNotFiniteAreNotWritten) {
  for (const float value :
       {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity()}) {
    const auto placemark = Read<Placemark>(
        "<Placemark><gx:balloonVisibility>1</gx:balloonVisibility><Style><IconStyle>"
        "<scale>2</scale><heading a=\"1\">3</heading></IconStyle></Style>"
        "</Placemark>");
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
  const auto write = [&](const QString& element) {
    return Element(RoundTrip("<Placemark>" + element + "</Placemark>"), "opacity");
  };
  EXPECT_EQ("", write("<opacity>0.5</opacity>"));
  EXPECT_EQ("<opacity a=\"1\">0.5</opacity>", write("<opacity a=\"1\">0.5</opacity>"));
}

TEST_F(FieldOutputTest, AltitudeModesReachOneOfTwoElements) {
  const std::pair<const char*, const char*> cases[] = {
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
  for (const auto& [read, written] : cases) {
    SCOPED_TRACE(read);
    const QString xml = RoundTrip(QString("<Point xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>%1"
                                          "<coordinates>1,2</coordinates></Point>")
                                      .arg(read));
    EXPECT_TRUE(Squeezed(xml).contains(QString("<Point>%1<coordinates>").arg(written)))
        << xml.toStdString();
  }
}

} // namespace vorrel::kestan
