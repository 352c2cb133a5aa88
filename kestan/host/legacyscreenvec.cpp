#include "kestan/host/legacyscreenvec.h"

namespace vorrel {

LegacyScreenVec::Units LegacyScreenVec::UnitsFromString(const QString& text) {
  return text == QLatin1String("pixels")        ? kPixels
         : text == QLatin1String("insetPixels") ? kInsetPixels
                                                : kFraction;
}

QString LegacyScreenVec::UnitsToString(Units units) {
  switch (units) {
  case kPixels:
    return QStringLiteral("pixels");
  case kInsetPixels:
    return QStringLiteral("insetPixels");
  case kFraction:
    break;
  }
  return QStringLiteral("fraction");
}

LegacyScreenVec LegacyScreenVec::Interpolate(const LegacyScreenVec& a, const LegacyScreenVec& b,
                                             double t) {
  if (t == 1.0)
    return b;
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.xunits, a.yunits};
}

void LegacyScreenVec::LegacyCoordToScreenVecCoord(double coord, Units units, double pixelScale,
                                                  double* fraction, double* pixels) {
  *fraction = units == kFraction ? coord : units == kInsetPixels ? 1.0 : 0.0;
  *pixels = units == kFraction ? 0.0 : (units == kInsetPixels ? -coord : coord) * pixelScale;
}

} // namespace vorrel
