#include "kestan/geometry/linestring.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/linestringschema.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<LineString, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<LineString>;

LineStringSchema::LineStringSchema()
    : SchemaT("LineString", &Geometry::GetClassSchema(), Namespace::kKml) {
  altitudeOffset.SetDefault(0.0);
  extrudeWidth.SetDefault(0.0F);
  endCap.SetDefault(false);
  beginCap.SetDefault(false);
}

const Schema& LineString::GetClassSchema() { return LineStringSchema::GetSingleton(); }

LineString::LineString(const KmlId& id, const QString& baseUrl)
    : LineString(nullptr, id, baseUrl) {}

LineString::LineString(AbstractFeature* feature, const KmlId& id, const QString& baseUrl)
    : LineString(GetClassSchema(), id, baseUrl) {
  Complete(feature);
}

LineString::LineString(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : Geometry(schema, id, baseUrl) {
  const LineStringSchema& fields = LineStringSchema::GetSingleton();
  extrudeWidth_ = fields.extrudeWidth.GetDefault();
  beginCap_ = fields.beginCap.GetDefault();
  endCap_ = fields.endCap.GetDefault();
  altitudeOffset_ = fields.altitudeOffset.GetDefault();
}

LineString::~LineString() { NotifyPreDelete(); }

void LineString::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void LineString::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

void LineString::SetAltitudes(const double* values, int count) {
  const int n = values ? std::min(count, GetCoordCount()) : 0;
  for (int i = 0; i < n; ++i)
    At(i).z = values[i];
  NotifyCoordAltsChanged();
}

void LineString::GetAltitudes(mmvector<double>& out) const {
  for (const Vec3<double>& coord : coords_)
    out.push_back(coord.z);
}

void LineString::SetAltitude(double altitude) {
  for (Vec3<double>& coord : coords_)
    coord.z = altitude;
  NotifyCoordAltsChanged();
}

void LineString::SetAltitude(int index, double altitude) {
  At(index).z = altitude;
  NotifyCoordAltsChanged();
}

const Vec3<double>* LineString::GetCoords(int& count) const {
  count = GetCoordCount();
  return coords_.empty() ? nullptr : coords_.data();
}

void LineString::SetCoords(const Vec3<double>* coords, int count) {
  coords_ = mmvector<Vec3<double>>(coords, coords + (coords ? std::max(count, 0) : 0));
  NotifyCoordsChanged();
}

void LineString::SetCoordCount(int count) {
  if (count == GetCoordCount() || count < 0)
    return;
  coords_.resize(static_cast<std::size_t>(count));
  NotifyCoordsChanged();
}

void LineString::SetCoord(int index, const Vec3<double>& coord) {
  At(index) = coord;
  NotifyCoordsChanged();
}

void LineString::SetCoordLonLat(int index, double longitude, double latitude) {
  At(index) = {longitude, latitude, At(index).z};
  NotifyCoordsChanged();
}

int LineString::AddCoord(int index, const Vec3<double>& coord) {
  const int place = std::clamp(index, -1, GetCoordCount() - 1) + 1;
  coords_.insert(coords_.begin() + place, coord);
  NotifyCoordsChanged();
  return place;
}

void LineString::DelCoord(int index) {
  if (index < 0 || index >= GetCoordCount())
    return;
  if (selectedCoord_ > index)
    --selectedCoord_;
  else if (selectedCoord_ == index && (index > 0 || coords_.size() < 2))
    --selectedCoord_;
  coords_.erase(coords_.begin() + index);
  NotifyCoordsChanged();
}

void LineString::SetSelectedCoord(int index) {
  if (index < -1 || index >= GetCoordCount())
    return;
  selectedCoord_ = index;
  NotifySelectionChanged();
}

void LineString::ResetSelection() { selectedCoord_ = -1; }

void LineString::ReverseCoordOrder() {
  std::reverse(coords_.begin(), coords_.end());
  NotifyCoordsChanged();
}

void LineString::NotifyCoordsChanged() {
  LineStringSchema::GetSingleton().coordinates.NotifyFieldChanged(*this);
}

void LineString::NotifyFieldChanged(const Field& field) {
  if (&field == &LineStringSchema::GetSingleton().coordinates)
    ClampSelection(GetCoordCount());
  Geometry::NotifyFieldChanged(field);
}

GeoBoundingBox<double> LineString::GetBBox() const { return CachedBBox(true); }

const GeoBoundingBox<double>& LineString::CachedBBox(bool acrossDateLine) const {
  if (TakeBoundsDirty()) {
    bbox_ = GeoBoundingBox<double>();
    for (const Vec3<double>& coord : coords_) {
      if (acrossDateLine)
        bbox_.add(coord);
      else
        bbox_.BoundingBox<double>::add(coord);
    }
  }
  return bbox_;
}

} // namespace vorrel::kestan
