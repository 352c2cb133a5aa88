#pragma once

#include "kestan/host/boundingbox.h"
#include "kestan/host/export.h"

namespace vorrel::kestan {

/// Box of normalised positions that may grow across the date line: its x range then reaches
/// beyond -1 or 1, as `CullRect` has it.
template <class T> struct KESTAN_EXPORT GeoBoundingBox : BoundingBox<T> {
  using BoundingBox<T>::BoundingBox;

  void add(const Vec3<T>& p) {
    if (this->IsEmpty() || (this->low.x <= p.x && p.x <= this->high.x))
      BoundingBox<T>::add(p);
    else
      AddBeyond(p);
  }
  /// An empty box changes nothing.
  void add(const BoundingBox<T>& box);

private:
  void AddBeyond(const Vec3<T>& p);
};

extern template struct GeoBoundingBox<double>;

} // namespace vorrel::kestan
