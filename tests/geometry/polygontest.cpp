#include "kestan/geometry/polygon.h"

#include "tests/geometry/geometrytest.h"

namespace vorrel::kestan {

namespace {

QString Boundary(const QString& role, const QString& coordinates) {
  return QString("<%1BoundaryIs><LinearRing><coordinates>%2</coordinates></LinearRing>"
                 "</%1BoundaryIs>")
      .arg(role, coordinates);
}

const QString kWithHoles = "<Polygon>" + Boundary("outer", "0,0,1 0,9,2 9,9,3 0,0,1") +
                           Boundary("inner", "1,1,4 1,2,5 2,2,6 1,1,4") +
                           Boundary("inner", "3,3,7 4,3,8 4,4,9 3,3,7") + "</Polygon>";

RefPtr<LinearRing> Ring() { return RefPtr<LinearRing>(new LinearRing(KmlId(), "")); }

} // namespace

using PolygonTest = GeometryTest;

TEST_F(PolygonTest, BoundariesComeBack) {
  const auto polygon = ReadShape<Polygon>(kWithHoles);
  ASSERT_TRUE(polygon->GetOuterBoundary());
  ASSERT_EQ(2U, polygon->GetInnerBoundaries().size());
  EXPECT_TRUE(polygon->GetOuterBoundary()->IsOuter());
  EXPECT_TRUE(polygon->GetInnerBoundaries()[1]->IsInner());
  EXPECT_EQ("3,3,7 4,3,8 4,4,9 3,3,7", Coords(*polygon->GetInnerBoundaries()[1]));
  const QString text = RoundTrip(kWithHoles);
  EXPECT_EQ(1, text.count("<innerBoundaryIs>")) << "all holes share one element";
  EXPECT_EQ(3, text.count("<LinearRing>"));
}

TEST_F(PolygonTest, TheCoordinateInterfaceReachesAllRings) {
  const auto polygon = ReadShape<Polygon>(kWithHoles);
  int count = -1;
  EXPECT_EQ(nullptr, polygon->GetCoords(count));
  EXPECT_EQ(0, count);
  EXPECT_EQ(12, polygon->GetCoordCount());
  EXPECT_EQ("0 0 1 9 9 3", Box(polygon->GetBBox())) << "holes don't count";
  FieldLog log(*polygon);
  polygon->GetOuterBoundary()->SetCoord(1, At(0, 20));
  EXPECT_EQ("bound", log.take());
  EXPECT_EQ("0 0 0 9 20 3", Box(polygon->GetBBox()));

  const double altitudes[] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  const double kept = Altitudes(*polygon)[9];
  polygon->SetAltitudes(altitudes, 9);
  EXPECT_EQ(4.0, Altitudes(*polygon)[3]);
  EXPECT_EQ(9.0, Altitudes(*polygon)[8]);
  EXPECT_EQ(kept, Altitudes(*polygon)[9]) << "the values ran out";
  polygon->SetAltitude(2.0);
  EXPECT_EQ(mmvector<double>(12, 2.0), Altitudes(*polygon));

  const RefPtr<Polygon> empty(new Polygon(KmlId(), ""));
  EXPECT_EQ("empty", Box(empty->GetBBox()));
  EXPECT_EQ(0, empty->GetCoordCount());
}

TEST_F(PolygonTest, RingsTurnTheirWay) {
  const auto polygon = ReadShape<Polygon>(kWithHoles); // outer and first hole clockwise
  polygon->MakeCounterClockwise();
  EXPECT_TRUE(polygon->GetOuterBoundary()->IsCounterClockwise());
  EXPECT_FALSE(polygon->GetInnerBoundaries()[0]->IsCounterClockwise());
  EXPECT_FALSE(polygon->GetInnerBoundaries()[1]->IsCounterClockwise());
  EXPECT_EQ("1,1,4 1,2,5 2,2,6 1,1,4", Coords(*polygon->GetInnerBoundaries()[0])) << "left alone";
}

TEST_F(PolygonTest, ReversingTheHolesTellsThemTheirPlaces) {
  const RefPtr<Polygon> polygon(new Polygon(KmlId(), ""));
  const RefPtr<LinearRing> a = Ring(), b = Ring(), c = Ring();
  for (LinearRing* ring : {a.get(), b.get(), c.get()})
    EXPECT_TRUE(polygon->AddInnerBoundary(ring));
  FieldLog log(*polygon);
  polygon->ReverseInnerBoundaryOrder();
  EXPECT_EQ("innerBoundaryIs", log.take());
  EXPECT_EQ(0, polygon->FindInnerBoundary(c.get()));
  EXPECT_EQ(2, polygon->FindInnerBoundary(a.get()));
  EXPECT_TRUE(polygon->DelInnerBoundary(0));
  EXPECT_EQ(b, polygon->GetInnerBoundaries()[0]);
}

TEST_F(PolygonTest, TheOuterBoundaryMayChangeInSilence) {
  const RefPtr<Polygon> polygon(new Polygon(KmlId(), ""));
  const RefPtr<LinearRing> a = Ring(), b = Ring();
  FieldLog log(*polygon);
  EXPECT_TRUE(polygon->SetOuterBoundaryNoNotification(a.get()));
  EXPECT_FALSE(polygon->SetOuterBoundaryNoNotification(a.get()));
  EXPECT_TRUE(polygon->SetOuterBoundaryNoNotification(b.get()));
  EXPECT_FALSE(a->HasOwner(*polygon));
  EXPECT_TRUE(b->IsOuter());
  EXPECT_EQ("", log.take());
  polygon->SetOuterBoundary(nullptr);
  EXPECT_EQ("outerBoundaryIs", log.take());
}

TEST_F(PolygonTest, IsMadeFromPositionsForAFeature) {
  const auto placemark = Placemark::CreatePlacemark();
  const mmvector<Vec3<double>> outer = {At(0, 0), At(1, 0), At(1, 1), At(0, 0)};
  const unsigned char flags[] = {0, 0, 1};
  const RefPtr<Polygon> polygon(new Polygon(placemark.get(), outer, flags, KmlId("p", "u"), ""));
  EXPECT_EQ(placemark.get(), polygon->GetFeature());
  EXPECT_EQ("0,0,0 1,0,0 1,1,0 0,0,0", Coords(*polygon->GetOuterBoundary()));
  ASSERT_TRUE(polygon->GetOuterBoundary()->GetEdgeFlags());
  EXPECT_EQ((mmvector<bool>{false, false, true}), *polygon->GetOuterBoundary()->GetEdgeFlags());
}

} // namespace vorrel::kestan
