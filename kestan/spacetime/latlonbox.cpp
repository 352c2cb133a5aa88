#include "kestan/spacetime/latlonbox.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/abstractxformschema.h"
#include "kestan/spacetime/latlonboxschema.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<LatLonBox, NewInstancePolicy, NoDerivedPolicy>;

namespace {

constexpr double kDegrees = 180.0;

const LatLonBoxSchema& Fields() { return LatLonBoxSchema::GetSingleton(); }

bool IsCorner(int corner) { return corner >= 0 && corner < AbstractXform::kCornerCount; }
bool IsNorth(int corner) { return corner < 2; }
bool IsWest(int corner) { return corner % 2 == 0; }

} // namespace

LatLonBoxSchema::LatLonBoxSchema()
    : SchemaT("LatLonBox", &AbstractXform::GetClassSchema(), Namespace::kKml) {
  rotation.SetDefault(0.0);
}

const Schema& LatLonBox::GetClassSchema() { return LatLonBoxSchema::GetSingleton(); }

LatLonBox::LatLonBox(const KmlId& id, const QString& baseUrl)
    : LatLonBox(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

LatLonBox::LatLonBox(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractXform(schema, id, baseUrl) {}

LatLonBox::~LatLonBox() { NotifyPreDelete(); }

void LatLonBox::GetCorner(Vec3<double>& out, int corner) const {
  if (IsCorner(corner))
    out = {(IsWest(corner) ? west_ : east_) / kDegrees,
           (IsNorth(corner) ? north_ : south_) / kDegrees, 0.0};
}

void LatLonBox::GetCorners(Vec3<double>* out, int) const {
  for (int corner = 0; corner < kCornerCount; ++corner)
    GetCorner(out[corner], corner);
}

void LatLonBox::SetCorner(const Vec3<double>& position, int corner) {
  if (!IsCorner(corner) || !IsPosition(position))
    return;
  const DeletionDeferrer deferrer;
  const LatLonBoxSchema& fields = Fields();
  const Vec3<double> degrees = position * kDegrees;
  (IsWest(corner) ? fields.west : fields.east).CheckSet(*this, degrees.x);
  (IsNorth(corner) ? fields.north : fields.south).CheckSet(*this, degrees.y);
}

void LatLonBox::SetCorners(const Vec3<double>* positions, int) {
  const Vec3<double>* const end = positions + kCornerCount;
  if (!std::all_of(positions, end, IsPosition))
    return;
  const auto [west, east] =
      std::minmax_element(positions, end, [](const auto& a, const auto& b) { return a.x < b.x; });
  const auto [south, north] =
      std::minmax_element(positions, end, [](const auto& a, const auto& b) { return a.y < b.y; });
  SetEdges(north->y, south->y, east->x, west->x);
}

void LatLonBox::GetLatLonExtent(double& north, double& south, double& east, double& west) const {
  north = north_ / kDegrees;
  south = south_ / kDegrees;
  east = east_ / kDegrees;
  west = west_ / kDegrees;
}

void LatLonBox::SetLatLonExtent(double north, double south, double east, double west, Edge edge) {
  if (!IsExtent(north, south, east, west))
    return;
  NormalizeExtents(north, south, east, west, east_ / kDegrees, west_ / kDegrees, edge);
  SetEdges(north, south, east, west);
}

void LatLonBox::SetEdges(double north, double south, double east, double west) {
  const DeletionDeferrer deferrer;
  const LatLonBoxSchema& fields = Fields();
  fields.north.CheckSet(*this, north * kDegrees);
  fields.south.CheckSet(*this, south * kDegrees);
  fields.east.CheckSet(*this, east * kDegrees);
  fields.west.CheckSet(*this, west * kDegrees);
}

} // namespace vorrel::kestan
