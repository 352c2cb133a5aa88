#pragma once

#include "kestan/geometry/geometry.h"
#include "kestan/host/convert.h"
#include "kestan/host/memory.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

/// Reads and writes shapes by themselves; `gx` is declared.
class GeometryTest : public KmlTest {
protected:
  template <class T> RefPtr<T> ReadShape(const QString& element) {
    const auto placemark =
        Read<Placemark>("<kml xmlns=\"http://www.vorrel.com/kml/2.2\" "
                        "xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><Placemark>" +
                        element + "</Placemark></kml>");
    return Cast<T>(placemark->GetGeometry(), element);
  }
  QString WriteShape(const Geometry& shape) const { return Element(Write(shape), shape.getType()); }
};

/// Position from degrees and metres.
inline Vec3<double> At(double longitude, double latitude, double altitude = 0.0) {
  return convert::LLAToNorm({longitude, latitude, altitude});
}

/// The position with its degrees and metres filled in for %1, %2 and %3.
inline QString Text(const char* format, const Vec3<double>& norm) {
  const Vec3<double> lla = convert::NormToLLA(norm);
  return QString(format).arg(lla.x).arg(lla.y).arg(lla.z);
}

/// The positions as "longitude,latitude,altitude" in degrees and metres, joined by blanks.
inline QString Coords(const Geometry& geometry) {
  int count = 0;
  const Vec3<double>* const coords = geometry.GetCoords(count);
  QStringList texts;
  for (int i = 0; i < count; ++i)
    texts += Text("%1,%2,%3", coords[i]);
  return texts.join(' ');
}

/// The box as "west south low east north high", in degrees and metres.
inline QString Box(const BoundingBox<double>& box) {
  return box.IsEmpty() ? "empty" : Text("%1 %2 %3 ", box.low) + Text("%1 %2 %3", box.high);
}

inline mmvector<double> Altitudes(const Geometry& geometry) {
  mmvector<double> altitudes;
  geometry.GetAltitudes(altitudes);
  return altitudes;
}

} // namespace vorrel::kestan
