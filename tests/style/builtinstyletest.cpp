#include "kestan/core/kestanoptions.h"
#include "kestan/core/library.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/stylemappair.h"
#include "kestan/style/stylevisitor.h"
#include "tests/style/styletest.h"

namespace vorrel::kestan {

class BuiltInStyleTest : public StyleTest {};

TEST_F(BuiltInStyleTest, AClientInstallsItsOwnDefault) {
  const auto document = ReadLocal(InDocument("<Placemark><name>p</name></Placemark>"));
  const AbstractFeature* feature = Find(*document, "p");
  EXPECT_EQ(Style::GetDefaultStyle(), feature->getRenderStyle(kStyleNormal));
  EXPECT_EQ(Style::GetDefaultHighlightStyle(), feature->getRenderStyle(kStyleHighlight));
  EXPECT_EQ("root://styles#default", Style::GetDefaultStyleUrl());
  EXPECT_TRUE(Style::GetDefaultStyle()->GetBit(kBitRootStyle));

  const RefPtr<Style> own(new Style(KmlId(Style::GetDefaultStyleUrl()), QString()));
  own->GetLineStyle()->SetWidth(3);
  EXPECT_EQ(own.get(), Style::GetDefaultStyle());
  EXPECT_EQ("LineStyle.width=3", Look(*feature));
}

TEST_F(BuiltInStyleTest, ADescriptionLeadsToOneStyle) {
  // Once more, it's the same object, which doesn't grow further. Numbers are those of old icons.
  const std::tuple<const char*, const char*, float> cases[] = {
      {"default+nicon=http://a/n.png+hicon=http://a/h.png",
       "default+nicon=http://a/n.png+hicon=http://a/h.png", 1.1F},
      {"default+nicon=http://a/n.png+hicon=http://a/n.png",
       "default+nicon=http://a/n.png+hicon=http://a/n.png", 1.0F},
      {"default?iconId=0x307", "default?iconId=775", 1.1F},
  };
  for (const auto& [id, same, highlight] : cases) {
    SCOPED_TRACE(id);
    const auto selector = StyleSelector::resolve(KmlId(id, Style::GetRootStyleBase()));
    EXPECT_EQ(selector, StyleSelector::resolve(KmlId(same, Style::GetRootStyleBase())));
    const IconStyle* icon = selector->InternalGetSelectedStyle(kStyleHighlight)->GetIconStyle();
    EXPECT_FLOAT_EQ(highlight, icon->GetScale());
    EXPECT_TRUE(icon->HasIcon());
  }
}

TEST_F(BuiltInStyleTest, UrlsOfMapsFollowFromThoseOfStyles) {
  EXPECT_EQ("root://styleMaps", StyleMap::GetStyleMapBase("root://styles"));
  EXPECT_EQ("a/styleMaps/styles", StyleMap::GetStyleMapBase("a/styles/styles"));
  EXPECT_EQ("", StyleMap::GetStyleMapBase("http://a/b"));
  EXPECT_FALSE(StyleMap::create(KmlId("", "http://a"), QString(), nullptr));
  const RefPtr<StyleMap> map = StyleMap::create(KmlId("m", "http://a"), QString(), nullptr);
  EXPECT_EQ(map, StyleMap::create(KmlId("m", "http://a"), QString(), nullptr));
  EXPECT_EQ(nullptr, Style::find("http://a", "m"));
  const RefPtr<Style> fresh = Style::GetStyleFromUrl("http://a#s");
  EXPECT_EQ(fresh, Style::GetStyleFromUrl("http://a#s"));
  EXPECT_TRUE(*Style::GetStyleFromUrl(QString()) == *Style::GetDefaultStyle());
}

TEST_F(BuiltInStyleTest, VisitsClimbToTheBaseClass) {
  class Log final : public StyleVisitor {
  public:
    using StyleVisitor::visit;
    void visit(StyleSelector&) override { text_ += "selector "; }
    void visit(StyleMap& map) override {
      text_ += "map ";
      StyleVisitor::visit(map);
    }
    bool ShouldVisitBaseClass(StyleSelector&) override { return climb_; }
    QString text_;
    bool climb_ = true;
  };
  Log log;
  Style::GetDefaultStyle()->accept(log);
  StyleMap::GetDefaultStyleMap()->accept(log);
  log.climb_ = false;
  StyleMap::GetDefaultStyleMap()->accept(log);
  EXPECT_EQ("selector map selector map ", log.text_);
}

TEST_F(BuiltInStyleTest, WithoutExperimentalKmlItsFieldsAreKeptAsTheyAre) {
  GShutdown();
  KestanCreationParams params;
  params.set_enable_experimental_kml(false);
  GInitialize(params);
  {
    const auto style = Read<Style>(
        "<Style xmlns='http://www.vorrel.com/kml/2.2' xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>"
        "<LineStyle><gx:repeat>3</gx:repeat></LineStyle>"
        "<IconStyle><gx:headingMode>geometryHeading</gx:headingMode></IconStyle></Style>");
    EXPECT_EQ(0.0F, style->GetLineStyle()->GetRepeat());
    EXPECT_EQ(kHeadingAuto, style->GetIconStyle()->GetHeadingMode());
    EXPECT_EQ("<gx:repeat>3</gx:repeat>", Element(Write(*style), "gx:repeat"));
  }
  GShutdown();
  GInitialize();
}

} // namespace vorrel::kestan
