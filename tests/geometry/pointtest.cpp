#include "kestan/geometry/point.h"

#include "kestan/feature/placemark.h"
#include "tests/geometry/geometrytest.h"

namespace vorrel::kestan {

using PointTest = GeometryTest;

TEST_F(PointTest, TheExtendedAltitudeModeWinsInEitherOrder) {
  const QString plain = "<altitudeMode>absolute</altitudeMode>";
  const QString extended = "<gx:altitudeMode>clampToSeaFloor</gx:altitudeMode>";
  for (const QString& modes : {extended + plain, plain + extended}) {
    SCOPED_TRACE(modes.toStdString());
    const auto point = ReadShape<Point>("<Point>" + modes + "</Point>");
    ASSERT_TRUE(point);
    EXPECT_EQ(kClampToSeaFloor, point->GetAltitudeMode());
    const QString text = WriteShape(*point);
    EXPECT_EQ(plain, Element(text, "altitudeMode"));
    EXPECT_EQ(extended, Element(text, "gx:altitudeMode"));
  }
}

TEST_F(PointTest, SettersNotifyOnceAndOnlyOfAChange) {
  const RefPtr<Point> point(new Point(KmlId(), ""));
  FieldLog log(*point);
  point->SetCoord(At(1, 2, 3));
  EXPECT_EQ("coordinates", log.take());
  EXPECT_EQ("1,2,3", Coords(*point));

  const double altitude = point->GetAltitude();
  point->SetCoord(point->GetCoord());
  point->SetAltitudes(&altitude, 1);
  point->SetAltitudes(nullptr, 1);
  const double other = altitude * 2;
  point->SetAltitudes(&other, 0);
  point->SetCoords(nullptr, 0);
  point->SetAltitudeMode(kClampToGround);
  EXPECT_EQ("", log.take());

  point->SetLongitude(0.5);
  point->SetLatitudes(&altitude, 1);
  point->SetAltitudes(&other, 1);
  EXPECT_EQ("coordinates coordinates coordinates", log.take());
  EXPECT_EQ(Vec3<double>(0.5, altitude, other), point->GetCoord());
}

TEST_F(PointTest, APlacemarkWithItsPointIsSmall) {
  // The two objects; their texts and the blocks of the allocator come on top. A string takes three
  // words rather than one with Qt 6.
  EXPECT_LE(sizeof(Placemark) + sizeof(Point), sizeof(QString) == sizeof(void*) ? 560U : 736U);
}

} // namespace vorrel::kestan
