#include "kestan/overlay/screenoverlay.h"

#include "kestan/host/system.h"
#include "kestan/overlay/screenoverlayschema.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

#include <cmath>
#include <complex>

namespace vorrel::kestan {

namespace {

using Complex = std::complex<double>;

QString Corners(const ScreenOverlay& overlay, int width, int height) {
  Vec2<float> verts[ScreenOverlay::kCornerCount];
  if (!overlay.GetScreenVerts(width, height, verts))
    return QStringLiteral("none");
  QString text;
  for (const Vec2<float>& v : verts)
    text += QStringLiteral("%1,%2 ")
                .arg(std::round(v.x * 100.0F) / 100.0F)
                .arg(std::round(v.y * 100.0F) / 100.0F);
  return text.trimmed();
}

} // namespace

class ScreenOverlayTest : public KmlTest {
protected:
  ~ScreenOverlayTest() override { System::SetPixelScale(1.0); }

  RefPtr<ScreenOverlay> ReadOverlay(const QString& content) {
    return Read<ScreenOverlay>("<ScreenOverlay xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>" +
                               content + "</ScreenOverlay>");
  }
};

TEST_F(ScreenOverlayTest, CornersLieWhereThePointsAndTheSizeSay) {
  const struct {
    const char* content;
    int imageW, imageH, width, height;
    const char* corners;
    double scale = 1.0;
  } cases[] = {
      {"", 100, 50, 200, 200, "50,75 150,75 150,125 50,125"},
      {"<rotation>90</rotation>", 100, 50, 200, 200, "125,50 125,150 75,150 75,50"},
      {"<Icon><gx:w>32</gx:w><gx:h>32</gx:h></Icon>", 100, 50, 200, 200,
       "84,84 116,84 116,116 84,116"},
      {"<overlayXY x='0' y='1' xunits='fraction' yunits='fraction'/><screenXY x='0' y='1' "
       "xunits='fraction' yunits='fraction'/><size x='0' y='0'/>",
       100, 50, 200, 200, "0,150 100,150 100,200 0,200"},
      // With one side given, the other one keeps the proportions.
      {"<size x='0' y='100'/>", 100, 50, 200, 200, "0,50 200,50 200,150 0,150"},
      {"<size x='0.25' y='0' xunits='fraction'/>", 100, 50, 400, 200,
       "150,75 250,75 250,125 150,125"},
      {"<size x='0.5' y='0.25' xunits='fraction' yunits='fraction'/>", 3, 7, 200, 200,
       "50,75 150,75 150,125 50,125"},
      // Of its own size it lies on whole pixels.
      {"", 101, 51, 200, 200, "50,75 151,75 151,126 50,126"},
      {"<size x='101' y='51.5'/>", 101, 51, 200, 200, "50,74.25 151,74.25 151,125.75 50,125.75"},
      {"<overlayXY x='1' y='1' xunits='fraction' yunits='fraction'/><screenXY x='10' y='20' "
       "xunits='insetPixels' yunits='insetPixels'/>",
       100, 50, 200, 200, "90,130 190,130 190,180 90,180"},
      // Pixels of the image grow with it.
      {"<overlayXY x='10' y='20'/><screenXY x='0' y='0'/><size x='200' y='100'/>", 100, 50, 200,
       200, "-20,-40 180,-40 180,60 -20,60"},
      {"<size x='100' y='50'/>", 100, 50, 200, 200, "0,50 200,50 200,150 0,150", 2.0},
      {"", 100, 50, 0, -3, "-49,-24 51,-24 51,26 -49,26"}, // a window of one pixel
      {"<overlayXY x='9' y='9'/><rotation>9</rotation>", 0, 0, 200, 100,
       "100,50 100,50 100,50 100,50"},
      {"<size x='50' y='0'/>", 0, 0, 200, 100, "75,50 125,50 125,50 75,50"},
      {"", -1, -1, 200, 200, "none"},
      {"<size x='10' y='10'/>", 100, -1, 200, 200, "none"},
      {"<size x='1e300' y='1'/>", 100, 50, 200, 200, "none"},
      {"<screenXY x='1e38' y='0' xunits='fraction'/>", 100, 50, 200, 200, "none"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.content) + c.corners);
    System::SetPixelScale(c.scale);
    const auto overlay = ReadOverlay(c.content);
    overlay->SetImageSize({c.imageW, c.imageH});
    EXPECT_EQ(c.corners, Corners(*overlay, c.width, c.height));
  }
}

// The point of the image for the screen lies at the point of the screen, and turning leaves the
// point for it where it was.
TEST_F(ScreenOverlayTest, TurningKeepsThePivotAndTheSize) {
  const double width = 640.0;
  const double height = 480.0;
  for (const double degrees : {0.0, 30.0, -135.0, 400.0}) {
    for (const auto& [a, r] : {std::pair(Complex(0.25, 0.75), Complex(0.5, 0.5)),
                               std::pair(Complex(1.5, -0.5), Complex(-2.0, 3.0))}) {
      const auto overlay =
          ReadOverlay(QStringLiteral("<overlayXY x='%1' y='%2' %6/><screenXY x='0.25' y='0.5' %6/>"
                                     "<rotationXY x='%3' y='%4' %6/><size x='0.5' y='0.125' %6/>"
                                     "<rotation>%5</rotation>")
                          .arg(a.real())
                          .arg(a.imag())
                          .arg(r.real())
                          .arg(r.imag())
                          .arg(degrees)
                          .arg("xunits='fraction' yunits='fraction'"));
      overlay->SetImageSize({10, 10});
      Vec2<float> verts[ScreenOverlay::kCornerCount];
      ASSERT_TRUE(
          overlay->GetScreenVerts(static_cast<int>(width), static_cast<int>(height), verts));
      const auto at = [&](int i) { return Complex(verts[i].x, verts[i].y); };
      const Complex turn = std::polar(1.0, degrees / 180.0 * M_PI);
      const Complex right = turn * (width * 0.5);
      const Complex up = turn * Complex(0.0, height * 0.125);
      EXPECT_NEAR(0.0, std::abs(at(1) - at(0) - right), 1e-3);
      EXPECT_NEAR(0.0, std::abs(at(2) - at(1) - up), 1e-3);
      EXPECT_NEAR(0.0, std::abs(at(3) - at(0) - up), 1e-3);
      const Complex pivot = at(0) + r.real() * right + r.imag() * up;
      const Complex unturned(width * (0.25 + 0.5 * (r - a).real()),
                             height * (0.5 + 0.125 * (r - a).imag()));
      EXPECT_NEAR(0.0, std::abs(pivot - unturned), 1e-3);
    }
  }
  const auto square = ReadOverlay("<rotation>45</rotation>");
  square->SetImageSize({100, 100});
  const ScreenOverlay::Rect rect = square->GetScreenRect(200, 300);
  EXPECT_NEAR(100.0 - 50.0 * std::sqrt(2.0), rect.minX, 1e-3);
  EXPECT_NEAR(150.0 + 50.0 * std::sqrt(2.0), rect.maxY, 1e-3);
}

TEST_F(ScreenOverlayTest, WhatTheClientComputesIsNotWritten) {
  const auto overlay = ReadOverlay("<rotation>3</rotation>");
  const QString before = Write(*overlay);
  FieldLog log(*overlay);
  Mat4<float> matrix;
  matrix.m[3][1] = 2.0F;
  for (int i = 0; i < 2; ++i) {
    overlay->SetTexMat(matrix);
    overlay->SetImageSize({4, 5});
  }
  EXPECT_EQ("texMat imageSize", log.take());
  EXPECT_EQ(before, Write(*overlay));
  const double nan = std::nan("");
  ScreenOverlaySchema::GetSingleton().size.SetTypedObject(*overlay, {nan, nan});
  EXPECT_EQ("none", Corners(*overlay, 100, 100));
}

} // namespace vorrel::kestan
