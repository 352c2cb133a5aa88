#pragma once

#include "kestan/overlay/abstractoverlay.h"

namespace vorrel::kestan {

class ImagePyramid;
class PhotoOverlaySchema;
class Point;
class ViewVolume;

/// A photo that stands in the scene.
class KESTAN_EXPORT PhotoOverlay final : public AbstractOverlay {
public:
  using ClassSchema = PhotoOverlaySchema;
  static const Schema& GetClassSchema();
  PhotoOverlay(const KmlId& id, const QString& baseUrl);
  ~PhotoOverlay() override;

  /// What the photo is shown on. A panorama is experimental.
  enum Shape { kRectangle = 0, kCylinder = 1, kSphere = 2, kPanorama = 3 };

  /// In degrees, about the line of sight.
  float GetRotation() const { return rotation_; }
  int GetShape() const { return shape_; }
  /// Where the photo's icon stands; null for none.
  Point* GetPoint() const { return point_.get(); }
  /// Null for a photo in one piece.
  ImagePyramid* GetImagePyramid() const { return imagePyramid_.get(); }
  /// Null for one that isn't given.
  ViewVolume* GetViewVolume() const { return viewVolume_.get(); }
  /// The same, made where it isn't there. It's written once something is set in it.
  ViewVolume* viewVolume();

  /// The size that the pyramid says, negative in tiles; without one, that of the fetched image.
  Vec2<long long> GetPhotoSize() const;
  /// True when both photos are shown in the same way, whatever they show.
  bool IsCompatible(const PhotoOverlay& other) const;

  /// The image that shows all of the photo, which is the coarsest tile of a pyramid. Empty without
  /// an icon.
  QString GetThumbnailUrl() const;
  /// A new icon for that image, with the part of the tile that the photo covers. It's empty where
  /// there's nothing to show.
  RefPtr<Icon> CreateThumbnail() const;

  void accept(FeatureVisitor& visitor) override;
  void NotifyInheritedVisibilityChanged() override;

private:
  friend class PhotoOverlaySchema;

  float rotation_ = 0.0F;
  RefPtr<Point> point_;
  RefPtr<ViewVolume> viewVolume_;
  RefPtr<ImagePyramid> imagePyramid_;
  int shape_ = kRectangle;
};

} // namespace vorrel::kestan
