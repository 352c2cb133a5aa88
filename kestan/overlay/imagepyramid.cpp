#include "kestan/overlay/imagepyramid.h"

#include "kestan/core/enum.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/overlay/imagepyramidschema.h"
#include "kestan/write/writestate.h" // the map's name in the output

#include <limits>
#include <utility>

namespace vorrel::kestan {

template class SchemaT<ImagePyramid, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<ImagePyramid>;

ImagePyramidSchema::ImagePyramidSchema() : SchemaT("ImagePyramid", nullptr, Namespace::kKml) {
  tileSize.SetDefault(ImagePyramid::kDefaultTileSize);
  maxWidth.SetDefault(0);
  maxHeight.SetDefault(0);
}

Enum& ImagePyramidSchema::NewGridOriginEnum() {
  static Enum origins(
      {{ImagePyramid::kUpperLeft, "upperLeft"}, {ImagePyramid::kLowerLeft, "lowerLeft"}}, false);
  return origins;
}

const Schema& ImagePyramid::GetClassSchema() { return ImagePyramidSchema::GetSingleton(); }

ImagePyramid::ImagePyramid(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

ImagePyramid::~ImagePyramid() { NotifyPreDelete(); }

long long ImagePyramid::GetPixelValue(long long size) const {
  using Limits = std::numeric_limits<long long>;
  if (size >= 0)
    return size;
  long long pixels = 0;
  if (__builtin_mul_overflow(size, -static_cast<long long>(tileSize_), &pixels))
    return tileSize_ > 0 ? Limits::max() : Limits::min();
  return pixels;
}

bool ImagePyramid::equals(const ImagePyramid& other) const {
  return maxWidth_ == other.maxWidth_ && maxHeight_ == other.maxHeight_ &&
         tileSize_ == other.tileSize_ && gridOrigin_ == other.gridOrigin_;
}

void ImagePyramid::WriteKml(WriteState& state) const {
  // Here the object is its own scratch copy: the field writes what the member holds.
  auto& self = const_cast<ImagePyramid&>(*this);
  QString written = state.RegisterUrl(existenceMapHref_,
                                      MakeAbsoluteUrl(GetBaseUrl(), existenceMapHref_), true, this);
  std::swap(self.existenceMapHref_, written);
  SchemaObject::WriteKml(state);
  std::swap(self.existenceMapHref_, written);
}

} // namespace vorrel::kestan
