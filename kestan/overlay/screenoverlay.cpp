#include "kestan/overlay/screenoverlay.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/host/system.h"
#include "kestan/overlay/screenoverlayschema.h"
#include "kestan/style/icon.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vorrel::kestan {

template class SchemaT<ScreenOverlay, NewInstancePolicy, NoDerivedPolicy>;

namespace {

using Units = LegacyScreenVec::Units;

constexpr float kDegree = 3.14159265358979323846F / 180.0F;

/// A coordinate: so much of the extent, and so many pixels.
struct Split {
  Split(double coord, Units units) {
    LegacyScreenVec::LegacyCoordToScreenVecCoord(coord, units, System::GetPixelScale(), &fraction,
                                                 &pixels);
  }

  double fraction = 0.0;
  double pixels = 0.0;
};

/// The coordinate as a fraction of an extent in pixels. One of 0 has no pixels.
float GetFraction(double coord, Units units, int extent) {
  const Split split(coord, units);
  return static_cast<float>((extent != 0 ? split.pixels / extent : 0.0) + split.fraction);
}

/// How large the image is shown along one axis.
struct ShownSize {
  ShownSize(double size, Units units, bool isOwn, int window, int image) {
    if (isOwn || size < 0.0) {
      fraction = static_cast<float>(image) / static_cast<float>(window);
      snaps = true;
      return;
    }
    const Split split(size, units);
    fraction = static_cast<float>(split.fraction + split.pixels / window);
    snaps = split.fraction == 0.0 && split.pixels == image;
  }

  float fraction; ///< Of the window.
  bool snaps;     ///< The image is shown pixel by pixel, so that its edges lie between those.
};

/// The fraction along an axis that keeps the proportions of an image, from that along the other.
float GetProportionalFraction(float other, int otherWindow, int otherImage, int window, int image) {
  if (otherImage == 0)
    return 0.0F;
  return other * static_cast<float>(otherWindow) * static_cast<float>(image) /
         (static_cast<float>(otherImage) * static_cast<float>(window));
}

/// What lies along one axis of the screen, in pixels.
struct Axis {
  float position; ///< Of the anchor in the window.
  float size;
  float anchor; ///< From the image's edge.
  float pivot;  ///< From the anchor.

  Axis(float screen, float overlay, float rotation, const ShownSize& shown, int window)
      : position(screen * static_cast<float>(window)),
        size(static_cast<float>(window) * shown.fraction), anchor(overlay * size),
        pivot(rotation * size - anchor) {
    if (!shown.snaps)
      return;
    size = std::floor(size + 0.5F);
    const float edge = position - anchor;
    position -= edge - std::floor(edge + 0.5F);
  }

  /// From the anchor, of the image's near or far edge.
  float GetEdge(bool isFar) const { return (isFar ? size : 0.0F) - anchor; }
};

} // namespace

ScreenOverlaySchema::ScreenOverlaySchema()
    : SchemaT("ScreenOverlay", &AbstractOverlay::GetClassSchema(), Namespace::kKml) {
  for (ScreenVecField* field : {&overlayXY, &screenXY, &rotationXY})
    field->SetDefault(ScreenOverlay::kMiddle);
  size.SetDefault(ScreenOverlay::kOwnSize);
  rotation.SetDefault(0.0F);
}

const Schema& ScreenOverlay::GetClassSchema() { return ScreenOverlaySchema::GetSingleton(); }

ScreenOverlay::ScreenOverlay(const KmlId& id, const QString& baseUrl)
    : AbstractOverlay(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

ScreenOverlay::~ScreenOverlay() { NotifyPreDelete(); }

/// The part that the icon shows, else the whole image.
Vec2<int> ScreenOverlay::GetShownImageSize() const {
  const Icon* const icon = GetIcon();
  return {icon && icon->GetW() > 0 ? icon->GetW() : GetImageSize().x,
          icon && icon->GetH() > 0 ? icon->GetH() : GetImageSize().y};
}

bool ScreenOverlay::GetScreenVerts(int width, int height, Vec2<float>* verts) const {
  const int w = std::max(width, 1);
  const int h = std::max(height, 1);
  const Vec2<int> image = GetShownImageSize();
  const bool isOwn = size_.x == 0.0 && size_.y == 0.0;
  ShownSize sizeX(size_.x, size_.xunits, isOwn, w, image.x);
  ShownSize sizeY(size_.y, size_.yunits, isOwn, h, image.y);
  if (sizeX.fraction == 0.0F)
    sizeX.fraction = GetProportionalFraction(sizeY.fraction, h, image.y, w, image.x);
  else if (sizeY.fraction == 0.0F)
    sizeY.fraction = GetProportionalFraction(sizeX.fraction, w, image.x, h, image.y);

  const Axis x(GetFraction(screenXY_.x, screenXY_.xunits, w),
               GetFraction(overlayXY_.x, overlayXY_.xunits, image.x),
               GetFraction(rotationXY_.x, rotationXY_.xunits, image.x), sizeX, w);
  const Axis y(GetFraction(screenXY_.y, screenXY_.yunits, h),
               GetFraction(overlayXY_.y, overlayXY_.yunits, image.y),
               GetFraction(rotationXY_.y, rotationXY_.yunits, image.y), sizeY, h);
  const float angle = rotation_ * kDegree;
  const float c = std::cos(angle);
  const float s = std::sin(angle);
  constexpr bool kFar[kCornerCount][2] = {
      {false, false}, {true, false}, {true, true}, {false, true}};
  bool isFinite = true;
  for (int i = 0; i < kCornerCount; ++i) {
    Vec2<float> p{x.GetEdge(kFar[i][0]), y.GetEdge(kFar[i][1])};
    if (rotation_ != 0.0F) {
      const Vec2<float> q{p.x - x.pivot, p.y - y.pivot};
      p = {c * q.x - s * q.y + x.pivot, s * q.x + c * q.y + y.pivot};
    }
    verts[i] = {p.x + x.position, p.y + y.position};
    isFinite = isFinite && std::isfinite(verts[i].x) && std::isfinite(verts[i].y);
  }
  return isFinite && image.x >= 0 && image.y >= 0;
}

ScreenOverlay::Rect ScreenOverlay::GetScreenRect(int width, int height) const {
  constexpr float kMost = std::numeric_limits<float>::max();
  Vec2<float> verts[kCornerCount];
  GetScreenVerts(width, height, verts);
  Rect rect{kMost, kMost, -kMost, -kMost};
  for (const Vec2<float>& vert : verts) {
    rect.minX = std::min(rect.minX, vert.x);
    rect.minY = std::min(rect.minY, vert.y);
    rect.maxX = std::max(rect.maxX, vert.x);
    rect.maxY = std::max(rect.maxY, vert.y);
  }
  return rect;
}

void ScreenOverlay::SetTexMat(const Mat4<float>& matrix) {
  if (matrix == texMat_)
    return;
  texMat_ = matrix;
  ScreenOverlaySchema::GetSingleton().texMat.NotifyFieldChanged(*this);
}

void ScreenOverlay::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
