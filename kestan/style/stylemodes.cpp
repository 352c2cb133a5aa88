#include "kestan/style/stylemodes.h"

#include "kestan/core/enum.h"

namespace vorrel::kestan {

std::unique_ptr<Enum> NewHeadingMode(bool experimental) {
  Enum::Table values{{kHeadingAuto, "auto"},
                     {kHeadingScreenUp, "screenUp"},
                     {kHeadingNorthUp, "northUp"},
                     {kHeadingNorthUp, "worldNorth"}};
  if (experimental)
    values.emplace_back(kHeadingGeometry, "geometryHeading");
  return std::make_unique<Enum>(values, false);
}

std::unique_ptr<Enum> NewFacingMode() {
  const Enum::Table values{{kFacingScreenProjection, "screenProjection"},
                           {kFacingBillboard, "billboard"},
                           {kFacingGeometryNormal, "geometryNormal"},
                           {kFacingVorrelNormal, "vorrelNormal"}};
  return std::make_unique<Enum>(values, false);
}

std::unique_ptr<Enum> NewHotSpotMode() {
  const Enum::Table values{{kHotSpotBegin, "beginPt"},
                           {kHotSpotEnd, "endPt"},
                           {kHotSpotCenter, "centerPt"},
                           {kHotSpotNearCameraDiscreet, "nearCameraDiscreetPt"},
                           {kHotSpotNearCameraContinuous, "nearCameraContinuousPt"}};
  return std::make_unique<Enum>(values, false);
}

} // namespace vorrel::kestan
