#include "kestan/link/viewparams.h"

#include <tuple>

namespace vorrel::kestan {

bool ViewParams::IsSameView(const ViewParams& other) const {
  const auto place = [](const ViewParams& v) {
    return std::tie(v.north, v.south, v.east, v.west, v.lookatLon, v.lookatLat, v.lookatRange,
                    v.lookatTerrainLon, v.lookatTerrainLat, v.lookatTerrainAlt, v.cameraLon,
                    v.cameraLat, v.cameraAlt, v.lookatTilt, v.lookatHeading);
  };
  return place(*this) == place(other);
}

} // namespace vorrel::kestan
