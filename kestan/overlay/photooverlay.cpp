#include "kestan/overlay/photooverlay.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/overlay/photooverlayschema.h"
#include "kestan/style/icon.h"

#include <algorithm>
#include <limits>

namespace vorrel::kestan {

template class SchemaT<PhotoOverlay, NewInstancePolicy, NoDerivedPolicy>;

namespace {

/// True for two that aren't there, and for equal ones.
template <class T> bool AreEqual(const RefPtr<T>& a, const RefPtr<T>& b) {
  return a && b ? a->equals(*b) : !a && !b;
}

int ToSide(long long size) {
  return static_cast<int>(
      std::clamp<long long>(size, -1, std::numeric_limits<int>::max())); // -1 is the whole image
}

/// Shows the part of the coarsest tile that the whole photo, made smaller, lies in.
void ShowInTile(Icon& icon, const ImagePyramid& pyramid) {
  const long long tileSize = pyramid.GetTileSize();
  long long w = pyramid.GetMaxWidth();
  long long h = pyramid.GetMaxHeight();
  const long long& larger = w > h ? w : h;
  if (larger <= 0 || tileSize <= 0)
    return;
  while (larger > tileSize) {
    w >>= 1;
    h >>= 1;
  }
  icon.SetW(ToSide(w));
  icon.SetH(ToSide(h));
  icon.SetX(0);
  icon.SetY(pyramid.GetGridOrigin() == ImagePyramid::kUpperLeft ? ToSide(tileSize - icon.GetH())
                                                                : 0);
}

} // namespace

PhotoOverlaySchema::PhotoOverlaySchema()
    : SchemaT("PhotoOverlay", &AbstractOverlay::GetClassSchema(), Namespace::kKml),
      shapes_(NewShapeEnum()) {
  rotation.SetDefault(0.0F);
}

Enum PhotoOverlaySchema::NewShapeEnum() {
  Enum::Table shapes = {{PhotoOverlay::kRectangle, "rectangle"},
                        {PhotoOverlay::kCylinder, "cylinder"},
                        {PhotoOverlay::kSphere, "sphere"}};
  if (GetEnableExperimentalFields())
    shapes.emplace_back(PhotoOverlay::kPanorama, "panorama");
  return Enum(shapes, false);
}

const Schema& PhotoOverlay::GetClassSchema() { return PhotoOverlaySchema::GetSingleton(); }

PhotoOverlay::PhotoOverlay(const KmlId& id, const QString& baseUrl)
    : AbstractOverlay(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

PhotoOverlay::~PhotoOverlay() { NotifyPreDelete(); }

ViewVolume* PhotoOverlay::viewVolume() {
  if (!viewVolume_) {
    const DeletionDeferrer deferrer;
    const RefPtr<ViewVolume> volume = ViewVolume::CreateImplied();
    if (!viewVolume_) { // nobody who heard of it has set another one
      viewVolume_ = volume;
      volume->AddOwner(*this);
    }
  }
  return viewVolume_.get();
}

Vec2<long long> PhotoOverlay::GetPhotoSize() const {
  if (imagePyramid_)
    return {imagePyramid_->GetMaxWidth(), imagePyramid_->GetMaxHeight()};
  return {GetImageSize().x, GetImageSize().y};
}

bool PhotoOverlay::IsCompatible(const PhotoOverlay& other) const {
  return shape_ == other.shape_ && AreEqual(viewVolume_, other.viewVolume_) &&
         AreEqual(imagePyramid_, other.imagePyramid_);
}

QString PhotoOverlay::GetThumbnailUrl() const {
  if (!GetIcon())
    return QString();
  QString url = GetIcon()->GetAbsoluteUrl();
  if (!imagePyramid_)
    return url;
  for (const char* part : {"$[level]", "$[x]", "$[y]"})
    url.replace(QLatin1String(part), QLatin1String("0"));
  return MakeAbsoluteUrl(imagePyramid_->GetBaseUrl(), url);
}

RefPtr<Icon> PhotoOverlay::CreateThumbnail() const {
  const DeletionDeferrer deferrer;
  if (!GetIcon())
    return Icon::CreateEmptyIcon();
  if (!imagePyramid_) {
    const RefPtr<SchemaObject> icon = CloneObject(*GetIcon(), false, nullptr);
    return icon ? RefPtr<Icon>(static_cast<Icon*>(icon.get())) : Icon::CreateEmptyIcon();
  }
  const RefPtr<ImagePyramid> pyramid = imagePyramid_; // whoever hears of the icon may drop it
  const QString url = GetThumbnailUrl();
  if (url.isEmpty())
    return Icon::CreateEmptyIcon();
  const RefPtr<Icon> icon = Icon::create(url, false);
  ShowInTile(*icon, *pyramid);
  return icon;
}

void PhotoOverlay::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

void PhotoOverlay::NotifyInheritedVisibilityChanged() {
  if (point_ && HandsDown())
    point_->UpdateInheritedVisibility();
  AbstractOverlay::NotifyInheritedVisibilityChanged();
}

} // namespace vorrel::kestan
