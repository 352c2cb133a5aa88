#pragma once

#include "kestan/host/export.h"

#include <QString>

namespace vorrel {

/// A position on the screen or on an image, each axis with its own unit.
struct KESTAN_EXPORT LegacyScreenVec {
  enum Units { kPixels = 0, kFraction = 1, kInsetPixels = 2 };

  double x = 0.0;
  double y = 0.0;
  Units xunits = kPixels;
  Units yunits = kPixels;

  /// "pixels", "fraction" or "insetPixels". Any other text is a fraction, the format's default.
  static Units UnitsFromString(const QString& text);
  static QString UnitsToString(Units units);

  /// The position at the fraction `t` of the way from `a` to `b`, in the units of `a`; `b` itself
  /// at 1.
  static LegacyScreenVec Interpolate(const LegacyScreenVec& a, const LegacyScreenVec& b, double t);

  /// Splits a coordinate so that it stands at `fraction` of the extent and `pixels` further. An
  /// inset is counted from the far end. `pixelScale` is device pixels for one pixel of `coord`.
  static void LegacyCoordToScreenVecCoord(double coord, Units units, double pixelScale,
                                          double* fraction, double* pixels);

  friend bool operator==(const LegacyScreenVec& a, const LegacyScreenVec& b) {
    return a.x == b.x && a.y == b.y && a.xunits == b.xunits && a.yunits == b.yunits;
  }
  friend bool operator!=(const LegacyScreenVec& a, const LegacyScreenVec& b) { return !(a == b); }
};

} // namespace vorrel
