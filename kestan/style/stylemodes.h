#pragma once

#include "kestan/host/export.h"

#include <memory>

namespace vorrel::kestan {

class Enum;

/// What the heading of an icon or a label is measured against.
enum HeadingMode {
  kHeadingAuto = 0,
  kHeadingScreenUp = 1,
  kHeadingNorthUp = 2,
  kHeadingGeometry = 3, ///< Experimental.
};

/// The plane that an icon or a label lies in.
enum FacingMode {
  kFacingScreenProjection = 0,
  kFacingBillboard = 1,
  kFacingGeometryNormal = 2,
  kFacingVorrelNormal = 3,
};

/// The place on a line at which an icon or a label stands.
enum HotSpotMode {
  kHotSpotBegin = 0,
  kHotSpotEnd = 1,
  kHotSpotCenter = 2,
  kHotSpotNearCameraDiscreet = 3,
  kHotSpotNearCameraContinuous = 4,
};

// The names of these modes in KML.
KESTAN_EXPORT std::unique_ptr<Enum> NewHeadingMode(bool experimental);
KESTAN_EXPORT std::unique_ptr<Enum> NewFacingMode();
KESTAN_EXPORT std::unique_ptr<Enum> NewHotSpotMode();

} // namespace vorrel::kestan
