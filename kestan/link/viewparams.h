#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

/// What the templates of a link can tell of a view. The bounds are normalised: degrees / 180. All
/// else is sent as it's given here.
struct KESTAN_EXPORT ViewParams {
  double north = 0.0;
  double south = 0.0;
  double east = 0.0;
  double west = 0.0;
  double lookatLon = 0.0;
  double lookatLat = 0.0;
  double lookatRange = 0.0;
  double lookatTerrainLon = 0.0;
  double lookatTerrainLat = 0.0;
  double lookatTerrainAlt = 0.0;
  double cameraLon = 0.0;
  double cameraLat = 0.0;
  double cameraAlt = 0.0;
  double lookatTilt = 0.0;
  double lookatHeading = 0.0;
  double horizFov = 0.0;
  double vertFov = 0.0;
  double horizPixels = 0.0;
  double vertPixels = 0.0;
  double terrainEnabled = 0.0;

  /// True when the two show the same place from the same position. The size of the window and
  /// whether there is terrain don't count.
  bool IsSameView(const ViewParams& other) const;
};

} // namespace vorrel::kestan
