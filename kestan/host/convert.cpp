#include "kestan/host/convert.h"

#include "kestan/host/coordinateformat.h"

namespace vorrel {

namespace convert {

Vec3<double> LLAToNorm(const Vec3<double>& lla) {
  using coordinate::kAltitude;
  using coordinate::kDegrees;
  // Divided, not multiplied by an inverse: that would round twice.
  return {lla.x / kDegrees.scale, lla.y / kDegrees.scale, lla.z / kAltitude.scale};
}

Vec3<double> NormToLLA(const Vec3<double>& norm) {
  using namespace coordinate;
  return {Denormalize(norm.x, kDegrees), Denormalize(norm.y, kDegrees),
          Denormalize(norm.z, kAltitude)};
}

} // namespace convert

int FormatNormLLA(const Vec3<double>& norm, char separator, char* buffer) {
  char* end = coordinate::Write(norm.x, coordinate::kDegrees, buffer);
  *end++ = separator;
  end = coordinate::Write(norm.y, coordinate::kDegrees, end);
  *end++ = separator;
  end = coordinate::Write(norm.z, coordinate::kAltitude, end);
  return static_cast<int>(end - buffer);
}

} // namespace vorrel
