#include "kestan/core/kestanoptions.h"
#include "kestan/feature/kmlschema.h"
#include "kestan/read/kmlhandler.h"
#include "tests/support/kmltest.h"

#include <utility>

namespace vorrel::kestan {

using KmlRootTest = KmlTest;

TEST_F(KmlRootTest, HintsNameATarget) {
  const std::pair<const char*, QString> cases[] = {
      {"target=sky", "target=sky"},
      {"target=sky,other=1", "target=sky"},
      {"other=1,target=moon", "target=moon"},
      {"target=skyline", "target=sky"}, // begins with a known one
      {"other=1", ""},
      {"target=", ""},
      {"", ""}};
  const KmlSchema& schema = KmlSchema::GetSingleton();
  for (const auto& [hint, written] : cases)
    EXPECT_EQ(written, schema.ComposeHintString(schema.GetHintTargetId(hint))) << hint;
  schema.AddHintTargets({"mars", "sky"});
  EXPECT_EQ(schema.GetHintTargetId("target=moon") + 1, schema.GetHintTargetId("target=mars"));
  EXPECT_TRUE(schema.GetHintTargetString(99).isNull());
}

TEST_F(KmlRootTest, AHintIsWrittenOnlyWhereThereIsOne) {
  EXPECT_FALSE(Write(*Read<Placemark>("<kml hint=\"target=sky\"><Placemark/></kml>"), kWriteNoHint)
                   .contains("hint="));
  const auto plain = Read<Placemark>("<kml><Placemark/></kml>");
  EXPECT_FALSE(Write(*plain).contains("hint="));
  KestanOptionsContext::kestanOptions.hintTarget.Set("mars");
  EXPECT_TRUE(Write(*plain).contains(" hint=\"target=mars\">"));
  KestanOptionsContext::kestanOptions.hintTarget.Reset();
}

TEST_F(KmlRootTest, TheRootIsWrittenWithAllThatItHolds) {
  const QByteArray kml =
      "<kml hint=\"target=sky\"><DocumentSource>there</DocumentSource><q/><Placemark>"
      "<name>n</name></Placemark></kml>";
  QByteArray text = kml;
  QByteArray former;
  for (int round = 0; round < 2; ++round) {
    KmlHandler handler(GetDocumentUrl(), 2, nullptr, nullptr, nullptr);
    const auto feature = Load(handler, text);
    ASSERT_TRUE(feature) << handler.GetErrorText().toStdString();
    EXPECT_TRUE(feature->isOfType(Placemark::GetClassSchema()));
    former = std::exchange(text, Write(*handler.GetRoot()).toUtf8());
    EXPECT_EQ(1, text.count("<kml")) << text.toStdString();
    EXPECT_EQ(1, text.count("<q>") + text.count("<q/>")) << text.toStdString();
    EXPECT_TRUE(text.contains("<DocumentSource>there</DocumentSource>"));
    EXPECT_TRUE(text.contains("hint=\"target=sky\""));
    EXPECT_TRUE(text.contains("<name>n</name>"));
  }
  EXPECT_EQ(former, text);
}

} // namespace vorrel::kestan
