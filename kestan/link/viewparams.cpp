#include "kestan/link/viewparams.h"

#include <algorithm>
#include <cmath>

namespace vorrel::kestan {

bool ViewParams::IsSameView(const ViewParams& other) const {
  static constexpr double ViewParams::*kPlace[] = {&ViewParams::north,
                                                   &ViewParams::south,
                                                   &ViewParams::east,
                                                   &ViewParams::west,
                                                   &ViewParams::lookatLon,
                                                   &ViewParams::lookatLat,
                                                   &ViewParams::lookatRange,
                                                   &ViewParams::lookatTerrainLon,
                                                   &ViewParams::lookatTerrainLat,
                                                   &ViewParams::lookatTerrainAlt,
                                                   &ViewParams::cameraLon,
                                                   &ViewParams::cameraLat,
                                                   &ViewParams::cameraAlt,
                                                   &ViewParams::lookatTilt,
                                                   &ViewParams::lookatHeading};
  return std::all_of(std::begin(kPlace), std::end(kPlace), [&](double ViewParams::*value) {
    const double a = this->*value;
    const double b = other.*value;
    return a == b || (std::isnan(a) && std::isnan(b)); // or it would change at every call
  });
}

} // namespace vorrel::kestan
