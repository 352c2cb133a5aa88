// Walks over the tree, and the time of all of it.

#include "kestan/feature/featureiterator.h"

#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/datetime.h"
#include "kestan/host/pump.h"
#include "kestan/spacetime/timeprimitive.h"
#include "tests/support/kmltest.h"
#include "tests/support/workers.h"

namespace vorrel::kestan {

using IteratorTest = KmlTest;

namespace {

using Iterator = AbstractFeature::Iterator;
using BasicFilter = Iterator::BasicFilter;

const char kTree[] =
    "<Document><Style id=\"hide\"><ListStyle><listItemType>checkHideChildren</listItemType>"
    "</ListStyle></Style><name>d</name>"
    "<Folder><name>a</name><Placemark><name>b</name></Placemark><Folder><name>c</name></Folder>"
    "</Folder><Folder><name>e</name><styleUrl>#hide</styleUrl><Placemark><name>f</name></Placemark>"
    "</Folder><Placemark><name>g</name></Placemark></Document>";

/// Names with their depths, in the order of the walk.
QString Walk(AbstractFeature* root, Iterator::FilterOp& filter = Iterator::s_default_no_filter) {
  QString result;
  for (Iterator at(root, filter); at.GetFeature(); at.next())
    result += at.GetFeature()->GetName() + QString::number(at.GetDepth());
  return result;
}

/// The range of the world as text, and the two counters.
QString World() {
  DateTime begin;
  DateTime end;
  int instants = 7;
  int spans = 7;
  const bool any = AbstractFeature::GetWorldTimeRange(begin, end, &instants, &spans);
  EXPECT_EQ(any, !begin.isUndefined());
  return QString("%1 %2 %3 %4").arg(begin.ToString(), end.ToString()).arg(instants).arg(spans);
}

QString Timed(const char* year) {
  return QString("<Placemark><TimeStamp><when>%1</when></TimeStamp></Placemark>").arg(year);
}

} // namespace

TEST_F(IteratorTest, TheTreeComesParentsFirstAsTheFilterSays) {
  const auto document = Read<AbstractFolder>(kTree);
  ASSERT_TRUE(document);
  struct Case {
    unsigned params;
    const char* walk;
  };
  const Case cases[] = {
      {0, "d0a1b2c2e1f2g1"},
      {BasicFilter::kHonourHideChildren, "d0a1b2c2e1g1"},
      {BasicFilter::kLeavesOnly, "b2c2e1f2g1"}, // what hides its children counts as a leaf
      {BasicFilter::kLeavesOnly | BasicFilter::kHonourHideChildren, "b2c2e1g1"},
  };
  for (const Case& c : cases) {
    BasicFilter filter(c.params);
    EXPECT_EQ(c.walk, Walk(document.get(), filter)) << c.params;
  }
  EXPECT_EQ("a0b1c1", Walk(document->GetChild(0))) << "no siblings of the root";
  EXPECT_EQ("g0", Walk(document->GetChild(2)));
  EXPECT_EQ("", Walk(nullptr));
}

TEST_F(IteratorTest, OtherDocumentsAndNetworkLinksCanBeLeftOut) {
  const auto root = Read<AbstractFolder>("<Folder id=\"r\"><name>r</name></Folder>");
  const auto other = ReadAt("http://example.com/other.kml",
                            "<Folder id=\"o\"><name>o</name><Placemark><name>p</name></Placemark>"
                            "</Folder>");
  const auto link = Read<AbstractFolder>("<NetworkLink><name>l</name></NetworkLink>");
  link->AddChild(*Read<Placemark>("<Placemark><name>q</name></Placemark>"));
  root->AddChild(static_cast<AbstractFeature&>(*other));
  root->AddChild(*link);
  BasicFilter same(BasicFilter::kSameDocument);
  EXPECT_EQ("r0l1q2", Walk(root.get(), same));
  BasicFilter stop(BasicFilter::kStopAtNetworkLinks | BasicFilter::kLeavesOnly);
  EXPECT_EQ("p2l1", Walk(root.get(), stop));
}

TEST_F(IteratorTest, TheWalkEndsWhereTheTreeIsTakenApart) {
  struct Case {
    const char* from; // the feature at which it's done
    void (*edit)(AbstractFolder& root);
    const char* walk;
  };
  const Case cases[] = {
      {"b", [](AbstractFolder& root) { root.RemChild(0); }, "d0a1b2"},
      {"b", [](AbstractFolder& root) { root.RemChild(1); }, "d0a1b2c2g1"},
      {"a", [](AbstractFolder& root) { root.InsertChild(2, *root.GetChild(0)); }, "d0a1b2c2"},
      {"f", [](AbstractFolder& root) { root.GetChild(1)->SetParent(nullptr); }, "d0a1b2c2e1f2"},
  };
  for (const Case& c : cases) {
    const auto document = Read<AbstractFolder>(kTree);
    QString walk;
    for (Iterator at(document.get()); at.GetFeature(); at.next()) {
      walk += at.GetFeature()->GetName() + QString::number(at.GetDepth());
      if (at.GetFeature()->GetName() == c.from)
        c.edit(*document);
    }
    EXPECT_EQ(c.walk, walk);
  }
  /// A filter that ends what it's asked about.
  struct Ender : Iterator::FilterOp {
    unsigned ProcessFeature(AbstractFeature* feature) override {
      if (feature->GetName() == "c")
        feature->SetParent(nullptr);
      return 0;
    }
  } ender;
  EXPECT_EQ("d0a1b2", Walk(Read<AbstractFolder>(kTree).get(), ender));
}

TEST_F(IteratorTest, TheWorldsTimeIsThatOfAllVisibleFeaturesOfTheThread) {
  EXPECT_EQ("  0 0", World());
  auto folder = Read<AbstractFolder>(
      "<Folder><TimeSpan><begin>2001</begin><end>2003</end></TimeSpan>" + Timed("2005") +
      Timed("1999") + "<Folder><TimeStamp><when>2002</when></TimeStamp></Folder></Folder>");
  ASSERT_TRUE(folder);
  EXPECT_EQ("1999Z 2005Z 3 1", World());
  folder->GetChild(1)->SetVisibility(false);
  EXPECT_EQ("2001Z 2005Z 2 1", World());
  folder->GetChild(1)->SetTimePrimitive(nullptr);
  folder->GetChild(0)->SetTimePrimitive(nullptr);
  EXPECT_EQ("2001Z 2003Z 1 1", World());
  DateTime begin = DateTime::FromString("1990");
  DateTime end = DateTime::FromString("2002");
  EXPECT_TRUE(AbstractFeature::GetWorldTimeRange(begin, end, nullptr, nullptr));
  EXPECT_EQ("1990 2003Z", begin.ToString() + ' ' + end.ToString()) << "widened only";

  // A worker's features count once they have come, and not those that it ends before.
  RefPtr<SchemaObject> built;
  {
    Workers workers(1, [&](int, ThreadScope& scope) {
      built = ReadAt("http://example.com/w.kml",
                     "<Folder>" + Timed("2020") + Timed("2021") + Timed("2022") + "</Folder>");
      auto& made = static_cast<AbstractFolder&>(*built);
      EXPECT_EQ("2020Z 2022Z 3 0", World());
      made.RemChild(2);
      EXPECT_TRUE(scope.JoinMainThread());
      made.RemChild(1);
      scope.LeaveMainThread();
    });
    workers.Finish([] { Pump::Run(0.01); });
    workers.Merge(0);
  }
  EXPECT_EQ("2001Z 2020Z 2 1", World());
  folder.reset();
  built.reset();
  EXPECT_EQ("  0 0", World());
}

} // namespace vorrel::kestan
