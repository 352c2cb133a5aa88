#include "kestan/spacetime/extentview.h"

#include "kestan/host/units.h"

#include <algorithm>
#include <cmath>

namespace vorrel::kestan {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kMinRange = 1000.0;

/// From the foot of the camera at the edge of a sphere of radius 1: how far the camera is up when
/// the view just takes in `extent` of the surface. No more than half the sphere is ever seen.
double GetDistance(double extent, float fov) {
  const double half = std::min(extent * 0.5 * kPi / 180.0, kPi / 2.0);
  const double slope = std::tan(static_cast<double>(fov) * kPi / 180.0 * 0.5);
  return std::sin(half) / slope + std::cos(half) - 1.0;
}

} // namespace

ExtentView GetExtentView(float fovX, float fovY, double north, double south, double east,
                         double west, double altitude) {
  const double radius = Units::s_planet_radius + std::max(altitude, 0.0);
  const double across = GetDistance(std::fabs(east - west), fovX) * radius;
  const double along = GetDistance(std::fabs(north - south), fovY) * radius;
  return {(north + south) * 0.5, (east + west) * 0.5, std::max({kMinRange, across, along})};
}

} // namespace vorrel::kestan
