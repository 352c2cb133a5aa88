#pragma once

namespace vorrel {

/// Lengths of the globe.
class Units {
public:
  /// Radius of the planet at the equator, in metres.
  static constexpr double s_planet_radius = 6378137.0;
  static constexpr double s_inv_planet_radius = 1.0 / s_planet_radius;
};

} // namespace vorrel
