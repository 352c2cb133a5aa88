#include "kestan/spacetime/latlonaltbox.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/latlonaltboxschema.h"
#include "kestan/spacetime/latlonboxschema.h"

#include <cmath>

namespace vorrel::kestan {

template class SchemaT<LatLonAltBox, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<LatLonAltBox>;

namespace {

constexpr double kDegrees = 180.0;

const LatLonAltBoxSchema& Fields() { return LatLonAltBoxSchema::GetSingleton(); }

} // namespace

LatLonAltBoxSchema::LatLonAltBoxSchema()
    : SchemaT("LatLonAltBox", &LatLonBox::GetClassSchema(), Namespace::kKml) {}

const Schema& LatLonAltBox::GetClassSchema() { return LatLonAltBoxSchema::GetSingleton(); }

LatLonAltBox::LatLonAltBox(const KmlId& id, const QString& baseUrl)
    : LatLonBox(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

LatLonAltBox::LatLonAltBox(double north, double south, double east, double west)
    : LatLonBox(GetClassSchema(), KmlId(), QString()) {
  north_ = north;
  south_ = south;
  east_ = east;
  west_ = west;
  NotifyPostCreate();
}

LatLonAltBox::~LatLonAltBox() { NotifyPreDelete(); }

void LatLonAltBox::SetAdjustedAltitudes(float min, float max) {
  if (!std::isfinite(min) || !std::isfinite(max) ||
      (min == adjustedMinAltitude_ && max == adjustedMaxAltitude_))
    return;
  adjustedMinAltitude_ = min;
  adjustedMaxAltitude_ = max;
  cartesianBox_ = {
      {static_cast<float>(west_ / kDegrees), static_cast<float>(south_ / kDegrees), min},
      {static_cast<float>(east_ / kDegrees), static_cast<float>(north_ / kDegrees), max}};
  cartesianBox_.ConvertToCartesianBoundingBox();
  Fields().adjustedAltitudes.NotifyFieldChanged(*this);
}

void LatLonAltBox::NotifyFieldChanged(const Field& field) {
  if (&field != &Fields().adjustedAltitudes)
    standsIn_ = false;
  LatLonBox::NotifyFieldChanged(field);
}

void LatLonAltBox::CopyNonFieldStuff(const SchemaObject& src) {
  standsIn_ = src.isOfType(GetClassSchema()) && static_cast<const LatLonAltBox&>(src).standsIn_;
  LatLonBox::CopyNonFieldStuff(src);
}

} // namespace vorrel::kestan
