#pragma once

#include "kestan/host/boundingbox.h"
#include "kestan/host/export.h"

namespace vorrel {

/// Rectangle on the globe in normalised coordinates: x and y are degrees divided by 180, so that
/// the globe is 2 wide.
///
/// `west` is never greater than `east` in a rectangle that isn't empty. One that crosses the date
/// line reaches beyond -1 or beyond 1: 0.9 to 1.2 goes from 162 degrees east to 144 degrees west.
struct KESTAN_EXPORT CullRect {
  double west = 1.0;
  double south = 1.0;
  double east = -1.0;
  double north = -1.0;

  static CullRect CopyFrom(const BoundingBox<double>& box) {
    return {box.low.x, box.low.y, box.high.x, box.high.y};
  }

  bool IsEmpty() const { return west > east || south > north; }
  /// True when the position lies inside, on whichever side of the date line it is counted from.
  bool contains(double x, double y) const;

  /// Grows until it holds the position: to the east or to the west, whichever takes less, and not
  /// beyond once around the globe. An empty one becomes that single position.
  void extend(double x, double y);
  /// Grows until it holds the other rectangle.
  void extend(const CullRect& other);
};

} // namespace vorrel
