#include "kestan/feature/placemark.h"
#include "kestan/feature/folder.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/point.h"
#include "tests/feature/faketime.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

using PlacemarkTest = KmlTest;

namespace {

class PointCounter final : public GeometryVisitor, public GeometryVisitorConst {
public:
  using GeometryVisitor::visit;
  using GeometryVisitorConst::visit;
  void visit(Point&) override { ++count_; }
  void visit(const Point&) override { ++constCount_; }
  bool ShouldVisitBaseClass(Geometry&) override { return false; }
  bool ShouldVisitBaseClass(const Geometry&) override { return false; }

  int count_ = 0;
  int constCount_ = 0;
};

} // namespace

TEST_F(PlacemarkTest, HoldsOneShape) {
  const auto placemark = Read<Placemark>("<Placemark><Point/></Placemark>");
  ASSERT_TRUE(placemark && placemark->GetGeometry());
  FieldLog log(*placemark);
  placemark->SetGeometry(placemark->GetGeometry());
  EXPECT_EQ("", log.take());
  placemark->SetGeometry(nullptr);
  EXPECT_EQ("Geometry", log.take());
}

TEST_F(PlacemarkTest, VisitorsReachTheShapesOfATree) {
  const auto folder =
      Read<Folder>("<Folder><Placemark><Point/></Placemark><Placemark/><Folder><Placemark><Point/>"
                   "</Placemark></Folder></Folder>");
  ASSERT_TRUE(folder);
  PointCounter counter;
  folder->Accept(static_cast<GeometryVisitor*>(&counter));
  static_cast<const Folder&>(*folder).Accept(static_cast<GeometryVisitorConst*>(&counter));
  EXPECT_EQ(2, counter.count_);
  EXPECT_EQ(2, counter.constCount_);
}

TEST_F(PlacemarkTest, AShapeWithTimesMakesThePlacemarkTimed) {
  const auto placemark = Placemark::CreatePlacemark();
  const RefPtr<Point> timed(new Point(KmlId(), QString()));
  timed->SetBit(kBitTrack, true);
  placemark->SetGeometry(timed.get());
  EXPECT_TRUE(placemark->IsTimedFeature());
  EXPECT_TRUE(placemark->GetBit(kBitTimedFeature));
  placemark->SetGeometry(RefPtr<Point>(new Point(KmlId(), QString())).get());
  EXPECT_FALSE(placemark->GetBit(kBitTimedFeature));
  placemark->SetTimePrimitive(RefPtr<FakeTime>(new FakeTime("2007")).get());
  placemark->SetGeometry(nullptr);
  EXPECT_TRUE(placemark->GetBit(kBitTimedFeature));
}

} // namespace vorrel::kestan
