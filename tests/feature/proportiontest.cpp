// What a document or a client does again and again costs no more than in proportion.

#include "kestan/core/objectobserver.h"
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/balloonvisibilityobserver.h"
#include "kestan/geometry/multigeometry.h"
#include "kestan/geometry/polygon.h"
#include "kestan/host/pump.h"
#include "tests/support/kmltest.h"

#include <ctime>
#include <functional>

namespace vorrel::kestan {

using ProportionTest = KmlTest;

namespace {

/// Processor time of an action in seconds.
template <class Action> double Seconds(Action action) {
  const std::clock_t start = std::clock();
  action();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

QString Repeat(const QString& text, int count) { return text.repeated(count); }

} // namespace

TEST_F(ProportionTest, WhatIsInheritedGoesDownOnceAfterReading) {
  constexpr int kChildren = 200;
  constexpr int kChanges = 100;
  const QString both = "<visibility>0</visibility><visibility>1</visibility>";
  const QString opacities = "<opacity>0.25</opacity><opacity>0.5</opacity>";
  const QString children = Repeat("<Placemark/>", kChildren);
  const std::pair<const char*, QString> cases[] = {
      {"visibility", "<Folder>%1" + Repeat(both, kChanges / 2) + "</Folder>"},
      {"opacity", "<Folder>%1" + Repeat(opacities, kChanges / 2) + "</Folder>"},
      {"opacity of a folder inside", "<Folder><Folder><Folder>%1</Folder>" +
                                         Repeat(opacities, kChanges / 2) + "</Folder></Folder>"},
      {"opacity of many levels",
       Repeat("<Folder><opacity>1.001</opacity>", kChanges) + "%1" + Repeat("</Folder>", kChanges)},
      {"shape", "<Placemark><MultiGeometry>" + Repeat("<Point/>", kChildren) + "</MultiGeometry>" +
                    Repeat(both, kChanges / 2) + "</Placemark>"},
  };
  for (const auto& [name, kml] : cases) {
    SCOPED_TRACE(name);
    const std::uint32_t before = ObjectObserver::s_revision_counter_;
    const auto tree = ReadObject(kml.contains("%1") ? kml.arg(children) : kml);
    ASSERT_TRUE(tree) << qPrintable(error());
    // Every notice counts.
    EXPECT_LE(ObjectObserver::s_revision_counter_ - before, 10U * (kChildren + kChanges));
    const std::uint32_t between = ObjectObserver::s_revision_counter_;
    tree->clone(true, nullptr);
    EXPECT_LE(ObjectObserver::s_revision_counter_ - between, 40U * (kChildren + kChanges));
  }
}

TEST_F(ProportionTest, WhatIsReadInheritsAsIfItHadBeenBuilt) {
  const auto top = Read<Folder>(
      "<Folder><TimeStamp><when>2007</when></TimeStamp><Folder><Folder><Placemark><Polygon>"
      "<outerBoundaryIs><LinearRing/></outerBoundaryIs></Polygon></Placemark><Placemark>"
      "<TimeStamp><when>2008</when></TimeStamp><opacity>0.5</opacity></Placemark>"
      "<opacity>0.5</opacity></Folder><visibility>0</visibility><opacity>0.5</opacity><Region/>"
      "</Folder><Placemark><Point/></Placemark><opacity>0.5</opacity></Folder>");
  auto* outer = static_cast<Folder*>(top->GetChild(0));
  auto* inner = static_cast<Folder*>(outer->GetChild(0));
  auto* shaped = static_cast<Placemark*>(inner->GetChild(0));
  const AbstractFeature* timed = inner->GetChild(1);
  EXPECT_EQ(0.125F, shaped->GetInheritedOpacity());
  EXPECT_EQ(0.0625F, timed->GetInheritedOpacity());
  EXPECT_EQ(top->GetTimePrimitive(), shaped->GetInheritedTime());
  EXPECT_EQ(timed->GetTimePrimitive(), timed->GetInheritedTime());
  EXPECT_EQ(outer->GetRegion(), timed->GetInheritedRegion());
  EXPECT_FALSE(shaped->isVisible());
  const auto isShown = [](const Placemark& placemark) {
    return placemark.GetGeometry()->GetBit(kBitInheritedVisibility);
  };
  EXPECT_FALSE(isShown(*shaped));
  EXPECT_TRUE(isShown(static_cast<Placemark&>(*top->GetChild(1))));
  outer->SetVisibility(true);
  EXPECT_TRUE(isShown(*shaped)) << "what comes after the reading goes down at once";
  const auto& polygon = static_cast<const Polygon&>(*shaped->GetGeometry());
  EXPECT_TRUE(polygon.GetOuterBoundary()->GetBit(kBitInheritedVisibility));
  top->SetVisibility(false);
  EXPECT_FALSE(isShown(*shaped));
}

TEST_F(ProportionTest, OneBalloonNoticeOfAFeatureWaits) {
  class BalloonCounter final : public BalloonVisibilityObserver {
  public:
    void OnNotify(AbstractFeature*) override {
      ++count;
      if (deed)
        deed();
    }
    int count = 0;
    std::function<void()> deed;
  };
  BalloonCounter counter;
  const QString element = "<gx:balloonVisibility>%1</gx:balloonVisibility>";
  auto placemark = Read<Placemark>(
      "<kml xmlns=\"http://www.vorrel.com/kml/2.2\" xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">"
      "<Placemark>" +
      Repeat(element.arg(1) + element.arg(0), 10) + "</Placemark></kml>");
  Pump::Run(1.0);
  EXPECT_EQ(1, counter.count);
  Pump::Run(1.0);
  EXPECT_EQ(1, counter.count);

  BalloonCounter first; // the latest is told first
  first.deed = [&] { placemark.reset(); };
  AbstractFeatureSchema::GetSingleton().balloonVisibility.SetTypedObject(*placemark, true);
  Pump::Run(1.0);
  EXPECT_EQ(1, first.count);
  EXPECT_EQ(1, counter.count) << "of a feature that has gone";
}

TEST_F(ProportionTest, HiddenEdgesAreFoundWhenTheyAreAskedFor) {
  const QString list = "<gx:hiddenEdgeList>" + Repeat("1 ", 100000) + "</gx:hiddenEdgeList>";
  const QString lines = Repeat("<coordinates>0,0 1,1</coordinates>"
                               "<coordinates>0,0 1,1 2,2</coordinates>",
                               2000);
  const QString kml =
      "<kml xmlns=\"http://www.vorrel.com/kml/2.2\" xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">"
      "<Placemark><LinearRing>%1</LinearRing></Placemark></kml>";
  const double last = Seconds([&] { ASSERT_TRUE(ReadObject(kml.arg(lines + list))); });
  const double first = Seconds([&] { ASSERT_TRUE(ReadObject(kml.arg(list + lines))); });
  EXPECT_LT(first, 5 * last + 0.05);
}

TEST_F(ProportionTest, AListOfStylesIsFilledClonedAndEmptied) {
  constexpr int kStyles = 16000;
  const RefPtr<Document> document(new Document(KmlId(), GetDocumentUrl()));
  const double filling = Seconds([&] {
    for (int i = 0; i < kStyles; ++i)
      document->AddStyleSelector(*Style::create(KmlId("s" + QString::number(i), GetDocumentUrl()),
                                                GetDocumentUrl(), nullptr));
  });
  const double cloning = Seconds([&] { document->clone(true, nullptr); });
  EXPECT_LT(cloning, 10 * filling + 0.05);
  const double emptying = Seconds([&] {
    while (document->GetStyleSelectorCount() > 0)
      document->RemStyleSelector(
          *document->GetStyleSelector(document->GetStyleSelectorCount() - 1));
  });
  EXPECT_LT(emptying, 10 * filling + 0.05);
}

TEST_F(ProportionTest, ShapesAtTheBottomOfADeepNestAreReadAsThoseOnTop) {
  const QString points = Repeat("<Point/>", 5000);
  const QString start = Repeat("<MultiGeometry>", 900);
  const QString end = Repeat("</MultiGeometry>", 900);
  const QString kml = "<Placemark>%1</Placemark>";
  const double top = Seconds(
      [&] { ASSERT_TRUE(ReadObject(kml.arg("<MultiGeometry>" + points + start.mid(15) + end))); });
  const double bottom = Seconds([&] { ASSERT_TRUE(ReadObject(kml.arg(start + points + end))); });
  EXPECT_LT(bottom, 5 * top + 0.05);
}

TEST_F(ProportionTest, DeepTreesGrowFromTheTopAsFromTheBottom) {
  constexpr int kLevels = 1000;
  const auto make = [] { return RefPtr<MultiGeometry>(new MultiGeometry(KmlId(), QString())); };
  RefPtr<MultiGeometry> bottom = make();
  const double upwards = Seconds([&] {
    for (int i = 0; i < kLevels; ++i) {
      const RefPtr<MultiGeometry> above = make();
      above->AddGeometry(*bottom);
      bottom = above;
    }
  });
  const RefPtr<MultiGeometry> top = make();
  const double downwards = Seconds([&] {
    RefPtr<MultiGeometry> above = top;
    for (int i = 0; i < kLevels; ++i) {
      const RefPtr<MultiGeometry> below = make();
      above->AddGeometry(*below);
      above = below;
    }
  });
  EXPECT_LT(downwards, 20 * upwards + 0.1);
}

} // namespace vorrel::kestan
