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
  ASSERT_TRUE(line);
  EXPECT_EQ("8,47,0 9,48,0", Coords(*line));
  EXPECT_EQ("8,47,0 9,48,0", Coords(*ReadShape<LineString>(WriteShape(*line))));
  line->SetAltitude(1, 1.0);
  EXPECT_EQ(WriteShape(*line), WriteShape(*ReadShape<LineString>(WriteShape(*line))));
}

TEST_F(LineStringTest, ExtensionFieldsAreReadAndWritten) {
  const QString fields =
      "<extrude>1</extrude><gx:name>path</gx:name><gx:drawOrder>3</gx:drawOrder>"
      "<coordinates>1,2,3 4,5,0 </coordinates><gx:altitudeOffset>2.5</gx:altitudeOffset>"
      "<gx:extrudeWidth>4</gx:extrudeWidth><gx:endCap>1</gx:endCap>"
      "<gx:beginCap>1</gx:beginCap>";
  const auto line = ReadShape<LineString>("<LineString>" + fields + "</LineString>");
  ASSERT_TRUE(line);
  EXPECT_EQ(2.5, line->GetAltitudeOffset());
  EXPECT_EQ(4.0F, line->GetExtrudeWidth());
  EXPECT_TRUE(line->GetBeginCap() && line->GetEndCap());
  EXPECT_EQ("path", line->GetName());
  EXPECT_TRUE(line->IsDrawOrderSet() && line->GetDrawOrder() == 3);
  const QString text = WriteShape(*line).remove('\n').remove('\t');
  EXPECT_EQ("<LineString>" + fields + "</LineString>", text);
  const QString empty = WriteShape(*Line("")).remove('\n').remove('\t');
  EXPECT_EQ("<LineString><coordinates></coordinates></LineString>", empty);
}

TEST_F(LineStringTest, EditingKeepsTheListAndTheSelection) {
  const auto line = Line("0,0 1,1 2,2 3,3");
  ASSERT_TRUE(line);
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
  struct Case {
    const char* coords;
    const char* box;
  };
  const Case cases[] = {
      {"", "empty"},
      {"-10,20,30 10,-20,3 0,0,0", "-10 -20 0 10 20 30"},
      {"170,10,1 -170,20,2", "170 10 1 190 20 2"},
      {"-170,10,1 170,20,2", "-190 10 1 -170 20 2"},
      {"170,10,1 -170,20,2 175,0,0 -175,0,0", "170 0 0 190 20 2"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.coords);
    const auto line = Line(c.coords);
    ASSERT_TRUE(line);
    EXPECT_EQ(c.box, Box(line->GetBBox()));
  }
  const auto line = Line("0,0,0 1,1,1");
  EXPECT_EQ("0 0 0 1 1 1", Box(line->GetBBox()));
  line->SetCoord(1, At(2, 2, 2));
  EXPECT_EQ("0 0 0 2 2 2", Box(line->GetBBox()));
  line->SetAltitude(1, 0.0);
  EXPECT_EQ("0 0 0 2 2 0", Box(line->GetBBox()));
}

} // namespace vorrel::kestan
