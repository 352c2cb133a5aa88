#include "kestan/host/cullrect.h"
#include "kestan/host/fastmath.h"
#include "kestan/host/legacyscreenvec.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using namespace vorrel;

TEST(CullRectTest, GrowsTheShorterWayAroundTheGlobe) {
  struct Case {
    double west, east, x;
    double newWest, newEast;
  };
  const Case cases[] = {{0.0, 0.25, 0.5, 0.0, 0.5},         {0.0, 0.25, -0.5, -0.5, 0.25},
                        {0.75, 0.875, -0.875, 0.75, 1.125}, {-0.875, -0.75, 0.75, -1.25, -0.75},
                        {0.75, 1.25, -0.875, 0.75, 1.25},   {0.75, 1.25, 0.5, 0.5, 1.25},
                        {-1.0, 1.0, 0.3, -1.0, 1.0},        {0.0, 0.0, 4.25, 0.0, 0.25}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.x);
    CullRect rect{c.west, 0.0, c.east, 0.25};
    rect.extend(c.x, 0.5);
    EXPECT_EQ(c.newWest, rect.west);
    EXPECT_EQ(c.newEast, rect.east);
    EXPECT_EQ(0.5, rect.north);
  }
}

TEST(CullRectTest, NeverShrinksAndNeverExceedsTheGlobe) {
  std::mt19937_64 random(6);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  for (int round = 0; round < 2000; ++round) {
    CullRect rect;
    for (int i = 0; i < 8; ++i) {
      const CullRect before = rect;
      const double x = unit(random);
      const double y = unit(random) / 2;
      if (i % 2 == 0) {
        rect.extend(x, y);
      } else {
        const double width = (unit(random) + 1) / 4;
        const CullRect other{x, y, x + width, y};
        rect.extend(other);
        ASSERT_TRUE(rect.contains(x + width * 0.999, y));
      }
      ASSERT_TRUE(rect.contains(x, y));
      ASSERT_LE(rect.east - rect.west, 2.0);
      if (!before.IsEmpty()) {
        ASSERT_LE(rect.west, before.west);
        ASSERT_GE(rect.east, before.east);
      }
    }
  }
  CullRect rect{0.0, 0.0, 0.5, 0.5};
  rect.extend(std::nan(""), 0.0);
  rect.extend(0.0, std::numeric_limits<double>::infinity());
  EXPECT_EQ(0.5, rect.east);
  EXPECT_EQ(0.5, rect.north);
}

TEST(FastMathTest, AlmostEqualForgivesRoundingsOnly) {
  EXPECT_TRUE(etalmostEquald(0.1 + 0.2, 0.3));
  EXPECT_TRUE(etalmostEquald(0.0, -0.0));
  EXPECT_TRUE(etalmostEquald(0.7 / 180 * 180, 0.7));
  EXPECT_FALSE(etalmostEquald(1.0, 1.0 + 1e-12 / 180));
  EXPECT_FALSE(etalmostEquald(0.0, 1e-300));
  EXPECT_FALSE(etalmostEquald(std::nan(""), std::nan("")));
}

TEST(FastMathTest, HeadingsGoClockwiseFromNorth) {
  const Vec3<double> home(0.1, 0.0, 0.0);
  const std::pair<Vec3<double>, double> cases[] = {
      {{0.1, 0.2, 0}, 0}, {{0.3, 0.0, 0}, 90}, {{0.1, -0.2, 5}, 180}, {{-0.1, 0.0, 0}, 270},
      {{0.1, 0.0, 0}, 0}, {{0.6, 0.25, 0}, 45}}; // a quarter around, on the circle of that slope
  for (const auto& [to, heading] : cases)
    EXPECT_NEAR(heading, ComputeCompassHeading(home, to), 1e-9);
  EXPECT_NEAR(90.0, ComputeCompassHeading({0.99, 0, 0}, {-0.99, 0, 0}), 1e-9); // the date line
}

TEST(FastMathTest, AttitudesTurnTheShortestWay) {
  constexpr double kDegree = 3.14159265358979323846 / 180;
  const auto turn = [](Vec3<double> a, Vec3<double> b, double t) {
    return EulerSlerp(a * kDegree, b * kDegree, t) * (1 / kDegree);
  };
  const auto expectNear = [](const Vec3<double>& expected, const Vec3<double>& actual) {
    for (int i = 0; i < 3; ++i)
      EXPECT_NEAR(expected[i], actual[i], 1e-6) << i;
  };
  expectNear({30, 0, 0}, turn({20, 0, 0}, {40, 0, 0}, 0.5));
  expectNear({-175, 0, 0}, turn({170, 0, 0}, {-160, 0, 0}, 0.5));
  expectNear({0, 15, 0}, turn({0, 0, 0}, {0, 60, 0}, 0.25));
  expectNear({0, 0, -15}, turn({0, 0, 0}, {0, 0, -60}, 0.25));
  // Seen from a small step away from the ends, each attitude is itself.
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> angle(-85.0, 85.0);
  for (int i = 0; i < 1000; ++i) {
    const Vec3<double> a(2 * angle(random), angle(random), 2 * angle(random));
    const Vec3<double> b(2 * angle(random), angle(random), 2 * angle(random));
    expectNear(a, turn(a, b, 1e-10));
    expectNear(b, turn(a, b, 1 - 1e-10));
    EXPECT_EQ(b * kDegree, EulerSlerp(a * kDegree, b * kDegree, 1.0));
  }
}

TEST(LegacyScreenVecTest, EachUnitHasItsPlace) {
  using Units = LegacyScreenVec::Units;
  // On an extent of 100 device pixels, with two of them for a pixel.
  const std::tuple<double, Units, double> cases[] = {
      {0.25, Units::kFraction, 25.0}, {10, Units::kPixels, 20.0}, {10, Units::kInsetPixels, 80.0}};
  for (const auto& [coord, units, position] : cases) {
    double fraction = -1;
    double pixels = -1;
    LegacyScreenVec::LegacyCoordToScreenVecCoord(coord, units, 2.0, &fraction, &pixels);
    EXPECT_EQ(position, fraction * 100.0 + pixels);
  }

  const LegacyScreenVec a{0, 0, Units::kFraction, Units::kPixels};
  const LegacyScreenVec b{1, 4, Units::kPixels, Units::kPixels};
  EXPECT_EQ((LegacyScreenVec{0.25, 1, Units::kFraction, Units::kPixels}),
            LegacyScreenVec::Interpolate(a, b, 0.25));
  EXPECT_EQ(b, LegacyScreenVec::Interpolate(a, b, 1.0));
}
