#include "kestan/geometry/linestring.h"

#include "tests/geometry/geometrytest.h"

namespace vorrel::kestan {

class LineStringTest : public GeometryTest {
protected:
  RefPtr<LineString> Line(const QString& coordinates) {
    return ReadShape<LineString>(
        QString("<LineString><coordinates>%1</coordinates></LineString>").arg(coordinates));
  }
};

TEST_F(LineStringTest, APolylineHasPairsWithTheLatitudeFirst) {
  const auto line = ReadShape<LineString>(
      "<LineString><coordinates type=\"polyline\">47,8 48,9</coordinates></LineString>");
  EXPECT_EQ("8,47,0 9,48,0", Coords(*line));
  EXPECT_EQ("8,47,0 9,48,0", Coords(*ReadShape<LineString>(WriteShape(*line))));
  line->SetAltitude(1, 1.0);
  EXPECT_EQ(WriteShape(*line), WriteShape(*ReadShape<LineString>(WriteShape(*line))));
}

TEST_F(LineStringTest, EditingKeepsTheListAndTheSelection) {
  const auto line = Line("0,0 1,1 2,2 3,3");
  FieldLog log(*line);
  line->SetSelectedCoord(4);
  line->SetSelectedCoord(-2);
  EXPECT_EQ("", log.take());
  line->SetSelectedCoord(2);
  EXPECT_EQ("selection", log.take());

  EXPECT_EQ(0, line->AddCoord(-1, At(9, 9)));
  EXPECT_EQ(3, line->AddCoord(2, At(8, 8)));
  EXPECT_EQ("9,9,0 0,0,0 1,1,0 8,8,0 2,2,0 3,3,0", Coords(*line));
  line->DelCoord(0);
  EXPECT_EQ(1, line->GetSelectedCoord()) << "it moves down with its position";
  line->DelCoord(1);
  EXPECT_EQ(0, line->GetSelectedCoord()) << "the neighbour takes over";
  line->DelCoord(0);
  EXPECT_EQ(0, line->GetSelectedCoord());
  EXPECT_EQ("8,8,0 2,2,0 3,3,0", Coords(*line));
  EXPECT_EQ("coordinates coordinates coordinates coordinates coordinates", log.take());
  line->DelCoord(3);
  line->DelCoord(-1);
  EXPECT_EQ("", log.take());
  line->SetCoordCount(1);
  line->DelCoord(0);
  EXPECT_EQ(-1, line->GetSelectedCoord());
  EXPECT_EQ(0, line->GetCoordCount());

  const Vec3<double> coords[] = {At(1, 1, 5), At(2, 2, 6)};
  line->SetCoords(coords, 2);
  line->SetCoordLonLat(0, At(7, 7).x, At(7, 7).y);
  line->ReverseCoordOrder();
  EXPECT_EQ("2,2,6 7,7,5", Coords(*line));
  line->SetCoordCount(3);
  EXPECT_EQ("2,2,6 7,7,5 0,0,0", Coords(*line));
  line->SetAltitudes(nullptr, 3);
  EXPECT_EQ("2,2,6 7,7,5 0,0,0", Coords(*line));
  line->SetCoords(nullptr, 3);
  EXPECT_EQ("", Coords(*line));
}

TEST_F(LineStringTest, TheBoxFollowsTheListAcrossTheDateLine) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "empty"},
      {"-10,20,30 10,-20,3 0,0,0", "-10 -20 0 10 20 30"},
      {"170,10,1 -170,20,2", "170 10 1 190 20 2"},
      {"-170,10,1 170,20,2", "-190 10 1 -170 20 2"},
      {"170,10,1 -170,20,2 175,0,0 -175,0,0", "170 0 0 190 20 2"},
  };
  for (const auto& [coords, box] : cases) {
    SCOPED_TRACE(coords);
    const auto line = Line(coords);
    EXPECT_EQ(box, Box(line->GetBBox()));
  }
  const auto line = Line("0,0,0 1,1,1");
  EXPECT_EQ("0 0 0 1 1 1", Box(line->GetBBox()));
  line->SetCoord(1, At(2, 2, 2));
  EXPECT_EQ("0 0 0 2 2 2", Box(line->GetBBox()));
  line->SetAltitude(1, 0.0);
  EXPECT_EQ("0 0 0 2 2 0", Box(line->GetBBox()));
}

TEST_F(LineStringTest, APointsSettersNotifyOnceAndOnlyOfAChange) {
  const RefPtr<Point> point(new Point(KmlId(), ""));
  FieldLog log(*point);
  point->SetCoord(At(1, 2, 3));
  EXPECT_EQ("coordinates", log.take());
  EXPECT_EQ("1,2,3", Coords(*point));

  const double altitude = point->GetAltitude();
  const double other = altitude * 2;
  point->SetCoord(point->GetCoord());
  point->SetAltitudes(&altitude, 1);
  point->SetAltitudes(nullptr, 1);
  point->SetAltitudes(&other, 0);
  point->SetCoords(nullptr, 0);
  EXPECT_EQ("", log.take());
  point->SetLongitude(0.5);
  point->SetLatitudes(&altitude, 1);
  point->SetAltitudes(&other, 1);
  EXPECT_EQ("coordinates coordinates coordinates", log.take());
  EXPECT_EQ(Vec3<double>(0.5, altitude, other), point->GetCoord());
}

TEST_F(LineStringTest, APlacemarkWithItsPointIsSmall) {
  // The two objects; their texts and the blocks of the allocator come on top. A string takes three
  // words rather than one with Qt 6.
  EXPECT_LE(sizeof(Placemark) + sizeof(Point), sizeof(QString) == sizeof(void*) ? 560U : 736U);
}

} // namespace vorrel::kestan
