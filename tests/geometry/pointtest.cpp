#include "kestan/geometry/point.h"

#include "kestan/feature/placemark.h"
#include "tests/geometry/geometrytest.h"

namespace vorrel::kestan {

using PointTest = GeometryTest;

TEST_F(PointTest, CoordinatesComeBackAsTheyWereWritten) {
  struct Case {
    const char* text;
    const char* written;
  };
  const Case cases[] = {
      {"8.5,47.25,400", "8.5,47.25,400"},
      {" -122.082203542568 , 37.422289901402 , 12.5 ", nullptr}, // numbers with their commas apart
      {"-122.082203542568,37.422289901402,0.123456789",
       "-122.082203542568,37.422289901402,0.123456789"},
      {"180,-90,-11000", "180,-90,-11000"},
      {"1,2", "1,2,0"},
      {"0,0,0", "0,0,0"},
      {"", "0,0,0"},
      {"here", "0,0,0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const auto point =
        ReadShape<Point>(QString("<Point><coordinates>%1</coordinates></Point>").arg(c.text));
    ASSERT_TRUE(point);
    const QString first = WriteShape(*point);
    if (c.written) {
      EXPECT_EQ(QString("<coordinates>%1</coordinates>").arg(c.written),
                Element(first, "coordinates"));
    }
    const auto again = ReadShape<Point>(first);
    ASSERT_TRUE(again);
    EXPECT_EQ(point->GetCoord(), again->GetCoord());
    EXPECT_EQ(first, WriteShape(*again));
  }
}

TEST_F(PointTest, TheExtendedAltitudeModeWinsInEitherOrder) {
  const char* const modes[] = {
      "<gx:altitudeMode>clampToSeaFloor</gx:altitudeMode><altitudeMode>absolute</altitudeMode>",
      "<altitudeMode>absolute</altitudeMode><gx:altitudeMode>clampToSeaFloor</gx:altitudeMode>"};
  for (const char* const mode : modes) {
    SCOPED_TRACE(mode);
    const auto point = ReadShape<Point>(QString("<Point>%1</Point>").arg(mode));
    ASSERT_TRUE(point);
    EXPECT_EQ(kClampToSeaFloor, point->GetAltitudeMode());
    const QString text = WriteShape(*point);
    EXPECT_EQ("", Element(text, "altitudeMode"));
    EXPECT_EQ("<gx:altitudeMode>clampToSeaFloor</gx:altitudeMode>",
              Element(text, "gx:altitudeMode"));
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

TEST_F(PointTest, KnowsItsFeatureWhileItHasOne) {
  const auto placemark = Placemark::CreatePlacemark();
  const RefPtr<Point> point(new Point(At(1, 2), placemark.get(), KmlId("p", ""), ""));
  EXPECT_EQ(placemark.get(), point->GetFeature());
  placemark->SetGeometry(point.get());
  EXPECT_TRUE(point->GetBit(kBitInheritedVisibility));

  FieldLog log(*point);
  const auto other = Placemark::CreatePlacemark();
  other->SetGeometry(point.get());
  EXPECT_EQ(other.get(), point->GetFeature());
  EXPECT_EQ(nullptr, placemark->GetGeometry());
  log.take();
  other->SetVisibility(false);
  EXPECT_EQ("visibility", log.take());
  EXPECT_FALSE(point->GetBit(kBitInheritedVisibility));
  other->SetGeometry(nullptr);
  EXPECT_EQ(nullptr, point->GetFeature());
}

TEST_F(PointTest, APlacemarkWithItsPointIsSmall) {
  // The two objects; their texts and the blocks of the allocator come on top. A string takes three
  // words rather than one with Qt 6.
  EXPECT_LE(sizeof(Placemark) + sizeof(Point), sizeof(QString) == sizeof(void*) ? 560U : 736U);
}

} // namespace vorrel::kestan
