#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

/// Where to look to have a box of the globe in sight: straight down on its middle.
struct ExtentView {
  double latitude; ///< In degrees, as the longitude.
  double longitude;
  double range; ///< In metres, from the box.
};

/// The view in which a box fills the field of view, from no nearer than a kilometre. Angles are in
/// degrees, the altitude of the box in metres; one below 0 counts as 0. North and south may come
/// either way round, and so may east and west: a box that crosses the date line reaches beyond 180.
KESTAN_EXPORT ExtentView GetExtentView(float fovX, float fovY, double north, double south,
                                       double east, double west, double altitude);

} // namespace vorrel::kestan
