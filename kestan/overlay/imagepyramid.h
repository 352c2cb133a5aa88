#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class ImagePyramidSchema;

/// How a large photo is cut into tiles, at several levels of detail.
class KESTAN_EXPORT ImagePyramid final : public SchemaObject {
public:
  using ClassSchema = ImagePyramidSchema;
  static const Schema& GetClassSchema();
  ImagePyramid(const KmlId& id, const QString& baseUrl);
  ~ImagePyramid() override;

  /// Where the rows of tiles begin.
  enum GridOrigin { kUpperLeft = 0, kLowerLeft = 1 };

  /// Pixels along an edge of a tile.
  int GetTileSize() const { return tileSize_; }
  /// Size of the photo, as stored: in pixels, or negative in tiles.
  long long GetMaxWidth() const { return maxWidth_; }
  long long GetMaxHeight() const { return maxHeight_; }
  int GetGridOrigin() const { return gridOrigin_; }
  /// Tells which tiles there are; for the client.
  const QString& GetExistenceMapHref() const { return existenceMapHref_; }

  /// A size as it may be stored, in pixels. One that no number holds is the last one that does.
  long long GetPixelValue(long long size) const;
  long long GetMaxWidthInPixels() const { return GetPixelValue(maxWidth_); }
  long long GetMaxHeightInPixels() const { return GetPixelValue(maxHeight_); }

  /// True when both cut photos in the same way.
  bool equals(const ImagePyramid& other) const;

  void WriteKml(WriteState& state) const override;

private:
  friend class ImagePyramidSchema;

  QString existenceMapHref_;
  long long maxWidth_ = 0;
  long long maxHeight_ = 0;
  int tileSize_ = kDefaultTileSize;
  int gridOrigin_ = kLowerLeft;

  static constexpr int kDefaultTileSize = 256;
};

} // namespace vorrel::kestan
