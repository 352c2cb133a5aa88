#pragma once

#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/mat4.h"
#include "kestan/overlay/abstractoverlay.h"

namespace vorrel::kestan {

class ScreenOverlaySchema;

/// An image fixed to the screen: a point of the image lies at a point of the window.
class KESTAN_EXPORT ScreenOverlay final : public AbstractOverlay {
public:
  using ClassSchema = ScreenOverlaySchema;
  static const Schema& GetClassSchema();
  ScreenOverlay(const KmlId& id, const QString& baseUrl);
  ~ScreenOverlay() override;

  /// The point of the window.
  const LegacyScreenVec& GetScreenXY() const { return screenXY_; }
  /// The point of the image.
  const LegacyScreenVec& GetOverlayXY() const { return overlayXY_; }
  /// The point of the image that it's turned about.
  const LegacyScreenVec& GetRotationXY() const { return rotationXY_; }
  /// Of the shown image, in pixels or fractions of the window: negative for the image's own, and 0
  /// on one axis for what keeps its proportions.
  const LegacyScreenVec& GetSize() const { return size_; }
  /// In degrees, from the x to the y axis.
  float GetRotation() const { return rotation_; }

  static constexpr int kCornerCount = 4;

  /// Where the corners of the image lie in a window, in pixels: those at (0, 0), (1, 0), (1, 1) and
  /// (0, 1) of the image, into an array of four. False, with `verts` of no use, while the size of
  /// the image isn't known, and where they lie beyond all numbers.
  bool GetScreenVerts(int width, int height, Vec2<float>* verts) const;

  struct Rect {
    float minX;
    float minY;
    float maxX;
    float maxY;
  };
  /// The rectangle around the corners. Of use where `GetScreenVerts` answers true.
  Rect GetScreenRect(int width, int height) const;

  /// The client's; it isn't written.
  const Mat4<float>& GetTexMat() const { return texMat_; }
  void SetTexMat(const Mat4<float>& matrix);

  void accept(FeatureVisitor& visitor) override;

private:
  friend class ScreenOverlaySchema;

  Vec2<int> GetShownImageSize() const;

  static constexpr LegacyScreenVec kMiddle{0.5, 0.5, LegacyScreenVec::kFraction,
                                           LegacyScreenVec::kFraction};
  static constexpr LegacyScreenVec kOwnSize{-1.0, -1.0, LegacyScreenVec::kPixels,
                                            LegacyScreenVec::kPixels};

  LegacyScreenVec screenXY_ = kMiddle;
  LegacyScreenVec overlayXY_ = kMiddle;
  LegacyScreenVec rotationXY_ = kMiddle;
  LegacyScreenVec size_ = kOwnSize;
  float rotation_ = 0.0F;
  Mat4<float> texMat_;
};

} // namespace vorrel::kestan
