#include "kestan/host/fastmath.h"

namespace vorrel {

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Quaternion {
  double w, x, y, z;
};

Quaternion operator*(const Quaternion& a, const Quaternion& b) {
  return {
      a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z, a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
      a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x, a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w};
}

Quaternion FromAttitude(const Vec3<double>& attitude) {
  const Quaternion heading{std::cos(attitude.x / 2), 0, 0, std::sin(attitude.x / 2)};
  const Quaternion tilt{std::cos(attitude.y / 2), std::sin(attitude.y / 2), 0, 0};
  const Quaternion roll{std::cos(attitude.z / 2), 0, std::sin(attitude.z / 2), 0};
  return heading * tilt * roll;
}

Vec3<double> ToAttitude(const Quaternion& q) {
  const double sineOfTilt = std::clamp(2 * (q.y * q.z + q.w * q.x), -1.0, 1.0);
  constexpr double kUpright = 1.0 - 1e-12;
  // Straight up or down, heading and roll turn about the same axis.
  if (std::fabs(sineOfTilt) > kUpright)
    return {std::atan2(2 * (q.x * q.y + q.w * q.z), 1 - 2 * (q.y * q.y + q.z * q.z)),
            std::copysign(kPi / 2, sineOfTilt), 0.0};
  return {std::atan2(2 * (q.w * q.z - q.x * q.y), 1 - 2 * (q.x * q.x + q.z * q.z)),
          std::asin(sineOfTilt),
          std::atan2(2 * (q.w * q.y - q.x * q.z), 1 - 2 * (q.x * q.x + q.y * q.y))};
}

} // namespace

double ComputeCompassHeading(const Vec3<double>& from, const Vec3<double>& to) {
  const double way = (to.x - from.x) * kPi;
  const double fromLatitude = from.y * kPi;
  const double toLatitude = to.y * kPi;
  const double east = std::sin(way) * std::cos(toLatitude);
  const double north = std::cos(fromLatitude) * std::sin(toLatitude) -
                       std::sin(fromLatitude) * std::cos(toLatitude) * std::cos(way);
  const double heading = std::atan2(east, north) * 180.0 / kPi;
  return heading < 0.0 ? heading + 360.0 : heading + 0.0;
}

Vec3<double> EulerSlerp(const Vec3<double>& a, const Vec3<double>& b, double t) {
  if (t == 0.0 || a == b)
    return a;
  if (t == 1.0)
    return b;
  const Quaternion from = FromAttitude(a);
  Quaternion to = FromAttitude(b);
  double cosine = from.w * to.w + from.x * to.x + from.y * to.y + from.z * to.z;
  if (cosine < 0.0) { // the same attitude by the other way around
    to = {-to.w, -to.x, -to.y, -to.z};
    cosine = -cosine;
  }
  const double angle = std::acos(std::min(cosine, 1.0));
  const double sine = std::sin(angle);
  constexpr double kTiny = 1e-9; // here a straight line is as good, and nothing is divided by 0
  const double weightFrom = sine < kTiny ? 1.0 - t : std::sin((1.0 - t) * angle) / sine;
  const double weightTo = sine < kTiny ? t : std::sin(t * angle) / sine;
  return ToAttitude({weightFrom * from.w + weightTo * to.w, weightFrom * from.x + weightTo * to.x,
                     weightFrom * from.y + weightTo * to.y, weightFrom * from.z + weightTo * to.z});
}

namespace math {

float ComputeFlatness(double north, double south, double east, double west, double minAltitude,
                      double maxAltitude) {
  if (!(north >= south) || !(east >= west))
    return 0.0F;
  const double height = (north - south) * kPi;
  // The parallel that is longest decides about the width.
  const double nearest = south > 0.0 ? south : north < 0.0 ? north : 0.0;
  const double width = (east - west) * kPi * std::cos(nearest * kPi);
  const double extent = std::max({width, height, maxAltitude - minAltitude});
  if (!(extent > 0.0))
    return 0.0F;
  const double halfAngle = std::min(std::max(width, height) / 2, kPi);
  return static_cast<float>((1.0 - std::cos(halfAngle)) * (1.0 + minAltitude) / extent);
}

} // namespace math

} // namespace vorrel
