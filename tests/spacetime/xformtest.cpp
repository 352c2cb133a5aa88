#include "kestan/spacetime/latlonaltbox.h"
#include "kestan/spacetime/latlonbox.h"
#include "kestan/spacetime/latlonquad.h"
#include "kestan/spacetime/latlonquadschema.h"
#include "kestan/spacetime/latlonxform.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace vorrel::kestan {

class XformTest : public KmlTest {
protected:
  template <class T> RefPtr<T> Make() { return RefPtr<T>(new T(KmlId(), QString())); }
};

namespace {

/// Longitudes in parts of a turn that are exact in binary, so that what follows is done in whole
/// numbers.
constexpr int kTurn = 128;
double ToNorm(int part) { return part / 64.0; }
int Wrap(int part) { return ((part % kTurn) + kTurn) % kTurn; }

struct Extent {
  double north = 0.0, south = 0.0, east = 0.0, west = 0.0;

  int GetEast() const { return static_cast<int>(std::lround(east * 64.0)); }
  int GetWidth() const { return static_cast<int>(std::lround((east - west) * 64.0)); }
};

Extent GetExtent(const AbstractXform& xform) {
  Extent extent;
  xform.GetLatLonExtent(extent.north, extent.south, extent.east, extent.west);
  return extent;
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

TEST_F(XformTest, BoxesComeBackWithWhatTheySaid) {
  const char* const texts[] = {
      "<LatLonBox></LatLonBox>",
      "<LatLonBox><north>1</north></LatLonBox>",
      "<LatLonBox><south>0</south><east>-170</east><west>170</west><rotation>10</rotation>"
      "</LatLonBox>",
      "<LatLonAltBox></LatLonAltBox>",
      "<LatLonAltBox><north>95</north><minAltitude>0</minAltitude><altitudeMode>absolute"
      "</altitudeMode></LatLonAltBox>",
      "<LatLonAltBox><gx:altitudeMode>clampToSeaFloor</gx:altitudeMode></LatLonAltBox>",
      "<LatLon></LatLon>",
      "<LatLon><topRight>1,2,3</topRight><bottomLeft>0,0,0</bottomLeft></LatLon>",
      "<gx:LatLonQuad></gx:LatLonQuad>",
      "<gx:LatLonQuad><coordinates></coordinates></gx:LatLonQuad>",
      "<gx:LatLonQuad><coordinates>1,2,0 3,4,0 </coordinates></gx:LatLonQuad>",
      "<gx:LatLonQuad><u></u></gx:LatLonQuad>",
  };
  for (const QString text : texts) {
    SCOPED_TRACE(text.toStdString());
    QString declared = text;
    declared.insert(text.indexOf('>'), " xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"");
    const auto object = ReadObject(declared);
    ASSERT_TRUE(object);
    auto& xform = static_cast<AbstractXform&>(*object);
    Vec3<double> corners[4];
    xform.GetCorners(corners, 4);
    GetExtent(xform);
    const QString written = Element(Write(*object), object->GetPrefixedName());
    EXPECT_EQ(text, QString(written).remove('\n').remove('\t'));
    EXPECT_EQ(written, Element(Write(*object->clone(true, nullptr)), object->GetPrefixedName()));
  }
  EXPECT_EQ(
      "<LatLonAltBox><north>1</north><south>0</south><east>2</east><west>-2</west>"
      "<minAltitude>0</minAltitude><maxAltitude>0</maxAltitude></LatLonAltBox>",
      Element(Write(*RefPtr<LatLonAltBox>(new LatLonAltBox(1.0, 0.0, 2.0, -2.0))), "LatLonAltBox")
          .remove('\n')
          .remove('\t'));
  EXPECT_TRUE(Write(*Make<LatLonQuad>()).contains("0,0,0 0,0,0 0,0,0 0,0,0 "));
}

TEST_F(XformTest, ABoxIsLaidOnTheGlobe) {
  for (int west = -kTurn + 3; west < kTurn; west += 7) {
    for (int east = -kTurn + 3; east < kTurn; east += 5) {
      SCOPED_TRACE(testing::Message() << west << " to " << east);
      const auto box = Make<LatLonBox>();
      box->SetLatLonExtent(0.25, -0.25, ToNorm(east), ToNorm(west), AbstractXform::kEdgeNone);
      const Extent extent = GetExtent(*box);
      // The same arc eastwards from west; a whole turn is one.
      EXPECT_EQ(std::abs(east - west) == kTurn ? kTurn : Wrap(east - west), extent.GetWidth());
      EXPECT_EQ(Wrap(east), Wrap(extent.GetEast()));
      EXPECT_LE(std::fabs(extent.east + extent.west), 2.0);
    }
  }
  double n = 0.1, s = -0.1, e = 200.0 / 180.0, w = 170.0 / 180.0;
  EXPECT_TRUE(AbstractXform::NormalizeExtents(n, s, e, w, e, w, AbstractXform::kEdgeNone));
  EXPECT_DOUBLE_EQ(-160.0 / 180.0, e);
  EXPECT_DOUBLE_EQ(-190.0 / 180.0, w);
  EXPECT_FALSE(AbstractXform::NormalizeExtents(n, s, e, w, e, w, AbstractXform::kEdgeNone));
}

TEST_F(XformTest, ADraggedEdgeStaysUnderThePointer) {
  using X = AbstractXform;
  const X::Edge west[] = {X::kEdgeWest, X::kEdgeNorthWest, X::kEdgeSouthWest};
  const X::Edge east[] = {X::kEdgeEast, X::kEdgeNorthEast, X::kEdgeSouthEast};
  const auto drag = [&](int start, int width, int step, int turns, int edge) {
    const bool isWest = edge < 3;
    const auto box = Make<LatLonBox>();
    box->SetLatLonExtent(0.25, -0.25, ToNorm(start + width), ToNorm(start), X::kEdgeNone);
    Extent now = GetExtent(*box);
    const int other = isWest ? now.GetEast() : now.GetEast() - now.GetWidth();
    const int former = isWest ? now.GetEast() - now.GetWidth() : now.GetEast();
    // The pointer's longitude, counted from wherever it's near enough to the other edge.
    const int pointer = former + step + turns * kTurn;
    if (turns != 0 && std::abs(pointer - other) >= kTurn)
      return;
    (isWest ? now.west : now.east) = ToNorm(pointer);
    box->SetLatLonExtent(now.north, now.south, now.east, now.west,
                         isWest ? west[edge] : east[edge - 3]);
    const Extent after = GetExtent(*box);
    EXPECT_EQ(std::clamp(isWest ? width - step : width + step, 0, kTurn), after.GetWidth());
    // A box that has become a whole turn may stop there ahead of the pointer.
    const int dragged = Wrap(after.GetEast() - (isWest ? after.GetWidth() : 0));
    EXPECT_TRUE(dragged == Wrap(pointer) || (after.GetWidth() == kTurn && dragged == Wrap(other)));
    if (turns == 0) {
      EXPECT_LE(std::fabs(after.east + after.west), 2.0);
    }
  };
  for (int start = -60; start <= 60; start += 12) { // on both sides of the date line
    for (const int width : {3, 20, 50, 62, 70, 100, 126}) {
      for (const int step : {-40, -15, -1, 1, 15, 40}) {
        for (const int turns : {-1, 0, 1}) {
          SCOPED_TRACE(testing::Message()
                       << start << " wide " << width << " by " << step << " and " << turns);
          for (int edge = 0; edge < 6; ++edge)
            drag(start, width, step, turns, edge);
        }
      }
    }
  }
}

TEST_F(XformTest, LatitudesStayBetweenThePoles) {
  using X = AbstractXform;
  const struct {
    double north, south;
    int edge;
    double wantedNorth, wantedSouth;
  } cases[] = {
      {0.2, 0.3, X::kEdgeSouth, 0.3, 0.3},     {0.2, 0.3, X::kEdgeSouthEast, 0.3, 0.3},
      {0.2, 0.3, X::kEdgeSouthWest, 0.3, 0.3}, {0.2, 0.3, X::kEdgeNorth, 0.2, 0.2},
      {0.2, 0.3, X::kEdgeNorthEast, 0.2, 0.2}, {0.2, 0.3, X::kEdgeNorthWest, 0.2, 0.2},
      {0.2, 0.3, X::kEdgeNone, 0.25, 0.25},    {0.2, 0.3, X::kEdgeEast, 0.25, 0.25},
      {0.2, 0.3, X::kEdgeWest, 0.25, 0.25},    {0.2, 0.3, 12, 0.25, 0.25},
      {0.7, -0.8, X::kEdgeNone, 0.5, -0.5},    {0.9, 0.7, X::kEdgeNone, 0.5, 0.5},
      {-0.7, -0.9, X::kEdgeNone, -0.5, -0.5},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.north << " " << c.south << " " << c.edge);
    double north = c.north, south = c.south, east = 0.5, west = -0.5;
    EXPECT_FALSE(X::NormalizeExtents(north, south, east, west, 0.5, -0.5, X::Edge(c.edge)));
    EXPECT_EQ(c.wantedNorth, north);
    EXPECT_EQ(c.wantedSouth, south);
    EXPECT_EQ(0.5, east);
    EXPECT_EQ(-0.5, west);
  }
}

TEST_F(XformTest, NoNumberMakesABoxThatIsNone) {
  const auto box = Make<LatLonBox>();
  const auto xform = Make<LatLonXform>();
  const auto quad = Make<LatLonQuad>();
  for (AbstractXform* place :
       {static_cast<AbstractXform*>(box.get()), static_cast<AbstractXform*>(xform.get()),
        static_cast<AbstractXform*>(quad.get())}) {
    place->SetLatLonExtent(0.25, -0.25, 0.5, -0.5, AbstractXform::kEdgeNone);
    for (const double bad : {std::nan(""), kInfinity, -kInfinity, 1e300, 1e18}) {
      for (int at = 0; at < 4; ++at) {
        const double v[] = {at == 0 ? bad : 0.1, at == 1 ? bad : 0.0, at == 2 ? bad : 0.3,
                            at == 3 ? bad : 0.2};
        for (int edge = 0; edge <= 9; ++edge)
          place->SetLatLonExtent(v[0], v[1], v[2], v[3], AbstractXform::Edge(edge));
        const Vec3<double> corner(at == 0 ? bad : 0.1, at == 0 ? 0.1 : bad, 0.0);
        const Vec3<double> corners[] = {corner, corner, corner, corner};
        place->SetCorner(corner, at);
        place->SetCorners(corners, 4);
      }
    }
    const Extent extent = GetExtent(*place);
    EXPECT_EQ(0.25, extent.north);
    EXPECT_EQ(-0.25, extent.south);
    EXPECT_EQ(0.5, extent.east);
    EXPECT_EQ(-0.5, extent.west);
    // As far as a number means anything, it ends in a box.
    place->SetLatLonExtent(1e6, -1e6, 1e6 + 0.5, 1e6, AbstractXform::kEdgeNone);
    EXPECT_TRUE(std::isfinite(GetExtent(*place).west));
  }
  const auto far = Read<LatLonBox>("<LatLonBox><east>1e308</east><west>-1e308</west></LatLonBox>");
  far->SetLatLonExtent(0.1, 0.0, 0.3, 0.2, AbstractXform::kEdgeEast);
  EXPECT_NEAR(0.1, GetExtent(*far).east - GetExtent(*far).west, 1e-12);
}

TEST_F(XformTest, CornersAreThoseOfTheExtent) {
  const Vec3<double> corners[] = {
      {-0.5, 0.25, 1.0}, {0.5, 0.25, 2.0}, {-0.5, -0.25, 3.0}, {0.5, -0.25, 4.0}};
  const auto box = Make<LatLonBox>();
  const auto xform = Make<LatLonXform>();
  const auto quad = Make<LatLonQuad>();
  for (AbstractXform* place :
       {static_cast<AbstractXform*>(box.get()), static_cast<AbstractXform*>(xform.get()),
        static_cast<AbstractXform*>(quad.get())}) {
    SCOPED_TRACE(place->getType().toStdString());
    FieldLog log(*place);
    place->SetCorners(corners, 4);
    EXPECT_EQ(place == box.get()     ? "north south east west"
              : place == xform.get() ? "topLeft topRight bottomLeft bottomRight"
                                     : "coordinates",
              log.take());
    place->SetCorners(corners, 4);
    EXPECT_EQ(place == xform.get() ? "topLeft topRight bottomLeft bottomRight" : "", log.take());
    const Extent extent = GetExtent(*place);
    EXPECT_EQ(0.25, extent.north);
    EXPECT_EQ(-0.25, extent.south);
    EXPECT_EQ(0.5, extent.east);
    EXPECT_EQ(-0.5, extent.west);
    Vec3<double> out[4];
    place->GetCorners(out, 0);
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(corners[i].x, out[i].x);
      EXPECT_EQ(corners[i].y, out[i].y);
      EXPECT_EQ(place == box.get() ? 0.0 : corners[i].z, out[i].z);
    }
    place->SetCorner({0.75, 0.375, 9.0}, 1);
    EXPECT_EQ(place == box.get()     ? "east north"
              : place == xform.get() ? "topRight"
                                     : "coordinates",
              log.take());
    for (const int none : {-1, 4}) {
      Vec3<double> kept(7.0, 8.0, 9.0);
      place->GetCorner(kept, none);
      place->SetCorner({0.0, 0.0, 0.0}, none);
      EXPECT_EQ(Vec3<double>(7.0, 8.0, 9.0), kept);
    }
    EXPECT_EQ("", log.take());
  }
  const Vec3<double> mixed[] = {corners[3], corners[0], corners[2], corners[1]};
  box->SetCorners(mixed, 4);
  EXPECT_EQ(45.0, box->GetNorth());
  EXPECT_EQ(-90.0, box->GetWest());
}

TEST_F(XformTest, AQuadRunsCounterClockwiseFromTheSouthWest) {
  const QString text = "<gx:LatLonQuad xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">"
                       "<coordinates>%1</coordinates></gx:LatLonQuad>";
  const auto quad = Read<LatLonQuad>(text.arg("9,18,1 18,18,2 18,36,3 9,36,4"));
  Vec3<double> corner;
  quad->GetCorner(corner, 2);
  EXPECT_EQ(0.05, corner.x);
  EXPECT_EQ(0.1, corner.y);
  quad->GetCorner(corner, 0);
  EXPECT_EQ(0.05, corner.x);
  EXPECT_EQ(0.2, corner.y);
  quad->SetLatLonExtent(0.5, 0.25, 2.5, 0.75, AbstractXform::kEdgeNone);
  EXPECT_EQ(2.5, GetExtent(*quad).east) << "taken as it is";
  EXPECT_TRUE(Write(*quad).contains("135,45,1 450,45,2 450,90,3 135,90,4 "));

  const auto two = Read<LatLonQuad>(text.arg("9,18,0 18,18,0"));
  two->GetCorner(corner, 1);
  EXPECT_EQ(Vec3<double>(), corner);
  FieldLog log(*two);
  two->SetCorner({0.0, 0.0, 0.0}, 0);
  EXPECT_EQ("", log.take());
  EXPECT_TRUE(Write(*two).contains("9,18,0 18,18,0 0,0,0 0,0,0 "));
  const auto none = Read<LatLonQuad>(text.arg(""));
  EXPECT_LT(GetExtent(*none).north, GetExtent(*none).south);
}

TEST_F(XformTest, TheBoxInSpaceHoldsWhatTheBoxOnTheGlobeHolds) {
  const struct {
    const char* what;
    double north, south, east, west;
    float low, high;
  } cases[] = {
      {"small", 46.0, 45.0, 11.0, 10.0, 0.0F, 0.001F},
      {"the equator and the line of noon", 20.0, -30.0, 15.0, -25.0, -0.001F, 0.002F},
      {"across the date line", 10.0, -20.0, 200.0, 160.0, 0.0F, 0.0F},
      {"a polar cap", 90.0, 80.0, 180.0, -180.0, 0.0F, 0.01F},
      {"a wide belt", 10.0, 5.0, 100.0, -170.0, 0.0F, 0.1F},
      {"the globe", 90.0, -90.0, 180.0, -180.0, 0.0F, 0.0F},
      {"more than the globe", 90.0, -90.0, 900.0, -180.0, 0.0F, 0.0F},
      {"a point", 30.0, 30.0, 60.0, 60.0, 0.5F, 0.5F},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const RefPtr<LatLonAltBox> box(new LatLonAltBox(c.north, c.south, c.east, c.west));
    EXPECT_TRUE(box->GetCartesianBox().IsEmpty());
    FieldLog log(*box);
    box->SetAdjustedAltitudes(c.low, c.high);
    box->SetAdjustedAltitudes(c.low, c.high);
    EXPECT_EQ("adjustedAltitudes", log.take());
    // The box around points all over it, from the formula of the sphere.
    BoundingBox<double> wanted;
    constexpr int kSteps = 720;
    constexpr double kPi = 3.14159265358979323846;
    const double width = std::min(c.east - c.west, 360.0);
    for (int i = 0; i <= kSteps; ++i) {
      for (int j = 0; j <= kSteps; ++j) {
        const double phi = (c.south + (c.north - c.south) * i / kSteps) * kPi / 180.0;
        const double lambda = (c.west + width * j / kSteps) * kPi / 180.0;
        for (const float altitude : {c.low, c.high}) {
          const double r = 1.0 + static_cast<double>(altitude);
          // y to the north, x to 90 degrees west, z to 180.
          wanted.add({-r * std::cos(phi) * std::sin(lambda), r * std::sin(phi),
                      -r * std::cos(phi) * std::cos(lambda)});
        }
      }
    }
    for (int axis = 0; axis < 3; ++axis) {
      EXPECT_NEAR(wanted.low[axis], static_cast<double>(box->GetCartesianBox().low[axis]), 2e-5);
      EXPECT_NEAR(wanted.high[axis], static_cast<double>(box->GetCartesianBox().high[axis]), 2e-5);
    }
  }
  const RefPtr<LatLonAltBox> box(new LatLonAltBox(1.0, 0.0, 1.0, 0.0));
  box->SetAdjustedAltitudes(std::nanf(""), 1.0F);
  EXPECT_EQ(-9999.0F, box->GetAdjustedMinAltitude());
  for (const double bad : {std::nan(""), kInfinity, 1e300}) {
    const RefPtr<LatLonAltBox> far(new LatLonAltBox(bad, -bad, bad, -bad));
    far->SetAdjustedAltitudes(0.0F, 1.0F);
    EXPECT_TRUE(far->GetCartesianBox().IsEmpty());
  }
}

} // namespace vorrel::kestan
