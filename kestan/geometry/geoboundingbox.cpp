#include "kestan/geometry/geoboundingbox.h"

#include "kestan/host/cullrect.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

template <class T> void SetRect(BoundingBox<T>& box, const CullRect& rect) {
  box.low.x = rect.west;
  box.low.y = rect.south;
  box.high.x = rect.east;
  box.high.y = rect.north;
}

} // namespace

template <class T> void GeoBoundingBox<T>::AddBeyond(const Vec3<T>& p) {
  CullRect rect = CullRect::CopyFrom(*this);
  rect.extend(p.x, p.y);
  SetRect(*this, rect);
  this->low.z = std::min(this->low.z, p.z);
  this->high.z = std::max(this->high.z, p.z);
}

template <class T> void GeoBoundingBox<T>::add(const BoundingBox<T>& box) {
  if (box.IsEmpty())
    return;
  if (this->IsEmpty()) {
    this->low = box.low;
    this->high = box.high;
    return;
  }
  CullRect rect = CullRect::CopyFrom(*this);
  rect.extend(CullRect::CopyFrom(box));
  SetRect(*this, rect);
  this->low.z = std::min(this->low.z, box.low.z);
  this->high.z = std::max(this->high.z, box.high.z);
}

template struct GeoBoundingBox<double>;

} // namespace vorrel::kestan
