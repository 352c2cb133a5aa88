#include "kestan/core/kestanoptions.h"
#include "kestan/feature/kmlschema.h"
#include "kestan/feature/placemark.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

using KmlRootTest = KmlTest;

TEST_F(KmlRootTest, HintsNameATarget) {
  struct Case {
    const char* hint;
    const char* target;
  };
  const Case cases[] = {
      {"target=sky", "sky"},     {"target=sky,other=1", "sky"}, {"other=1,target=moon", "moon"},
      {"target=skyline", "sky"}, // begins with a known one
      {"other=1", nullptr},      {"target=", nullptr},          {"", nullptr},
  };
  const KmlSchema& schema = KmlSchema::GetSingleton();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.hint);
    const int id = schema.GetHintTargetId(c.hint);
    if (c.target) {
      EXPECT_EQ(c.target, schema.GetHintTargetString(id));
      EXPECT_EQ(QString("target=") + c.target, schema.ComposeHintString(id));
    } else {
      EXPECT_EQ(-1, id);
      EXPECT_EQ("", schema.ComposeHintString(id));
    }
  }
  schema.AddHintTargets({"mars", "sky"});
  EXPECT_EQ(schema.GetHintTargetId("target=moon") + 1, schema.GetHintTargetId("target=mars"));
  EXPECT_TRUE(schema.GetHintTargetString(99).isNull());
}

TEST_F(KmlRootTest, TheHintComesBack) {
  const auto feature = Read<Placemark>("<kml hint=\"target=sky\"><Placemark/></kml>");
  ASSERT_TRUE(feature);
  EXPECT_TRUE(Write(*feature).contains(" hint=\"target=sky\">"));
  EXPECT_FALSE(Write(*feature, kWriteNoHint).contains("hint="));
  const auto plain = Read<Placemark>("<kml><Placemark/></kml>");
  ASSERT_TRUE(plain);
  EXPECT_FALSE(Write(*plain).contains("hint="));
  KestanOptionsContext::kestanOptions.hintTarget.Set("mars");
  EXPECT_TRUE(Write(*plain).contains(" hint=\"target=mars\">"));
  KestanOptionsContext::kestanOptions.hintTarget.Reset();
}

} // namespace vorrel::kestan
