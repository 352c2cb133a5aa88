#include "kestan/geometry/linearring.h"

#include "kestan/geometry/linestringschema.h"
#include "kestan/geometry/polygon.h"
#include "tests/geometry/geometrytest.h"

namespace vorrel::kestan {

class LinearRingTest : public GeometryTest {
protected:
  RefPtr<LinearRing> Ring(const QString& coordinates) {
    return ReadShape<LinearRing>(
        QString("<LinearRing><coordinates>%1</coordinates></LinearRing>").arg(coordinates));
  }
};

namespace {

/// One character an edge, "-" for a hidden one; empty while all are visible.
QString Edges(const LinearRing& ring) {
  QString text;
  if (const mmvector<bool>* flags = ring.GetEdgeFlags()) {
    for (const bool hidden : *flags)
      text += hidden ? '-' : '+';
  }
  return text;
}

} // namespace

TEST_F(LinearRingTest, EditingKeepsTheRingClosed) {
  const RefPtr<LinearRing> ring(new LinearRing(KmlId(), ""));
  EXPECT_EQ(0, ring->AddCoord(-1, At(0, 0)));
  EXPECT_EQ("0,0,0 0,0,0", Coords(*ring));
  ring->AddCoord(0, At(1, 0));
  ring->AddCoord(1, At(1, 1));
  EXPECT_EQ("0,0,0 1,0,0 1,1,0 0,0,0", Coords(*ring));
  ring->AddCoord(-1, At(5, 5));
  EXPECT_EQ("5,5,0 0,0,0 1,0,0 1,1,0 5,5,0", Coords(*ring));
  ring->SetCoord(0, At(6, 6, 6));
  EXPECT_EQ("6,6,6 0,0,0 1,0,0 1,1,0 6,6,6", Coords(*ring));
  ring->SetCoordLonLat(0, At(7, 7).x, At(7, 7).y);
  ring->SetCoordAlt(0, 0.0);
  ring->SetCoord(1, At(2, 2));
  EXPECT_EQ("7,7,0 2,2,0 1,0,0 1,1,0 7,7,0", Coords(*ring));
  ring->ReverseCoordOrder();
  EXPECT_EQ("1,1,0 1,0,0 2,2,0 7,7,0 1,1,0", Coords(*ring));
  ring->DelCoord(0);
  EXPECT_EQ("1,0,0 2,2,0 7,7,0 1,0,0", Coords(*ring));
  ring->DelCoord(3); // the closing position
  ring->DelCoord(1);
  ring->DelCoord(1);
  EXPECT_EQ("1,0,0 1,0,0", Coords(*ring));
  ring->DelCoord(0);
  EXPECT_EQ("", Coords(*ring));
}

TEST_F(LinearRingTest, AnOpenListStaysAsReadUntilItIsEdited) {
  const auto ring = Ring("0,0 1,0 1,1");
  EXPECT_EQ("0,0,0 1,0,0 1,1,0", Coords(*ring));
  ring->AddCoord(2, At(0, 1));
  EXPECT_EQ("0,0,0 1,0,0 1,1,0 0,1,0 0,0,0", Coords(*ring));

  const auto front = Ring("0,0 1,0 1,1");
  front->AddCoord(-1, At(0, 1));
  EXPECT_EQ("0,1,0 0,0,0 1,0,0 1,1,0 0,1,0", Coords(*front));
}

TEST_F(LinearRingTest, TheSelectionGoesWithItsPositionAndNeverToTheClosingOne) {
  struct Case {
    const char* coordinates;
    int selection;
    std::vector<int> deleted; // one after the other
    int remains;
    int count;
  };
  const char* const triangle = "0,0 1,0 1,1 0,0";
  const Case cases[] = {
      {triangle, 3, {}, -1, 4},    {triangle, 2, {0}, 1, 3}, // still the same position
      {triangle, 2, {0, 1}, 0, 2}, {triangle, 2, {0, 1, 0}, -1, 0},
      {triangle, 0, {0}, 1, 3}, // the last before the closing one
      {"0,0 1,0", 0, {0}, -1, 0},  {"0,0 1,0", 0, {1}, -1, 0},
      {"0,0", -1, {0}, -1, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.coordinates << ' ' << c.selection << ' ' << c.count);
    const auto ring = Ring(c.coordinates);
    ring->SetSelectedCoord(c.selection);
    for (const int index : c.deleted)
      ring->DelCoord(index);
    EXPECT_EQ(c.remains, ring->GetSelectedCoord());
    EXPECT_EQ(c.count, ring->GetCoordCount());
  }
  const auto ring = Ring(triangle);
  ring->SetSelectedCoord(2);
  ring->SetCoordCount(3);
  EXPECT_EQ(-1, ring->GetSelectedCoord()) << "it closes the ring now";
  ring->SetSelectedCoord(1);
  ring->SetCoordCount(0);
  ring->SetSelectedCoord(-1);
  EXPECT_EQ(-1, ring->GetSelectedCoord()) << "can be dropped, also in an empty ring";
}

TEST_F(LinearRingTest, TheSelectionOfALineGoesWithTheListThatItWasIn) {
  const Vec3<double> two[] = {At(0, 0), At(1, 1)};
  const auto line =
      ReadShape<LineString>("<LineString><coordinates>0,0 1,0 1,1</coordinates></LineString>");
  line->SetSelectedCoord(2);
  line->SetCoords(two, 2);
  EXPECT_EQ(-1, line->GetSelectedCoord());
  line->SetSelectedCoord(1);
  line->SetCoord(0, At(5, 5));
  EXPECT_EQ(1, line->GetSelectedCoord());
  LineStringSchema::GetSingleton().coordinates.fromString(*line, nullptr, nullptr, "0,0", -1,
                                                          nullptr);
  EXPECT_EQ(-1, line->GetSelectedCoord());
}

TEST_F(LinearRingTest, HiddenEdgesMayBeListedBeforeOrBehindTheCoordinates) {
  const QString list = "<gx:hiddenEdgeList>0 2 9</gx:hiddenEdgeList>";
  const QString coords = "<coordinates>0,0 1,0 1,1 0,0</coordinates>";
  for (const QString& body : {list + coords, coords + list}) {
    SCOPED_TRACE(body.toStdString());
    const auto ring = ReadShape<LinearRing>("<LinearRing>" + body + "</LinearRing>");
    EXPECT_EQ("-+-", Edges(*ring));
    EXPECT_EQ(3U, ring->GetHiddenEdgeList().size());
    const auto again = ReadShape<LinearRing>(WriteShape(*ring));
    EXPECT_EQ("-+-", Edges(*again));
    ring->AddCoord(2, At(0, 1));
    EXPECT_EQ("-+-+", Edges(*ring));
  }
  EXPECT_EQ("", Edges(*Ring("0,0 1,0 0,0")));
}

TEST_F(LinearRingTest, EdgeFlagsHoldWhilePositionsMove) {
  const auto ring = Ring("0,0 1,0 1,1 0,0");
  const unsigned char flags[] = {0, 7, 0};
  ring->SetEdgeFlags(flags, 3);
  ring->SetCoord(1, At(2, 0));
  EXPECT_EQ("+-+", Edges(*ring));
  const unsigned char none[] = {0, 0, 0};
  ring->SetEdgeFlags(none, 3);
  EXPECT_EQ("", Edges(*ring));
}

TEST_F(LinearRingTest, OrientationFollowsTheCoordinates) {
  const auto ring = Ring("0,0 1,0 1,1 0,0");
  EXPECT_TRUE(ring->IsCounterClockwise());
  ring->ReverseCoordOrder();
  EXPECT_FALSE(ring->IsCounterClockwise());
  for (const char* flat : {"", "0,0 1,0 0,0", "0,0 1,1 2,2 0,0"})
    EXPECT_TRUE(Ring(flat)->IsCounterClockwise()) << flat;
  // A square of a centimetre.
  const auto small = Ring("139.7654321,35.6543211,0 139.7654322,35.6543211,0 "
                          "139.7654322,35.6543212,0 139.7654321,35.6543212,0 "
                          "139.7654321,35.6543211,0");
  EXPECT_TRUE(small->IsCounterClockwise());
  small->ReverseCoordOrder();
  EXPECT_FALSE(small->IsCounterClockwise());
}

TEST_F(LinearRingTest, TheRoleAndTheBoxDependOnThePolygon) {
  const RefPtr<LinearRing> ring(new LinearRing(KmlId(), ""));
  const Vec3<double> coords[] = {At(170, 0), At(-170, 0), At(-170, 5), At(170, 0)};
  ring->SetCoords(coords, 4);
  EXPECT_EQ("170 0 0 190 5 0", Box(ring->GetBBox()));
  EXPECT_FALSE(ring->IsInner() || ring->IsOuter());

  const RefPtr<Polygon> first(new Polygon(KmlId(), ""));
  const RefPtr<Polygon> second(new Polygon(KmlId(), ""));
  first->SetOuterBoundary(ring.get());
  EXPECT_TRUE(ring->IsOuter());
  EXPECT_EQ("-170 0 0 170 5 0", Box(ring->GetBBox()));
  second->AddInnerBoundary(ring.get());
  EXPECT_EQ(nullptr, first->GetOuterBoundary());
  EXPECT_TRUE(ring->IsInner() && !ring->IsOuter());
  second->RemInnerBoundary(ring.get());
  EXPECT_FALSE(ring->IsInner() || ring->IsOuter());
  EXPECT_EQ("170 0 0 190 5 0", Box(ring->GetBBox()));
}

} // namespace vorrel::kestan
