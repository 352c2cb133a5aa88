#include "kestan/spacetime/latlonxform.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/abstractxformschema.h"
#include "kestan/spacetime/latlonxformschema.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<LatLonXform, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const LatLonXformSchema& Fields() { return LatLonXformSchema::GetSingleton(); }

bool IsCorner(int corner) { return corner >= 0 && corner < AbstractXform::kCornerCount; }

} // namespace

LatLonXformSchema::LatLonXformSchema()
    : SchemaT("LatLon", &AbstractXform::GetClassSchema(), Namespace::kKml) {
  rotation.SetDefault(0.0);
}

const Schema& LatLonXform::GetClassSchema() { return LatLonXformSchema::GetSingleton(); }

LatLonXform::LatLonXform(const KmlId& id, const QString& baseUrl)
    : AbstractXform(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

LatLonXform::~LatLonXform() { NotifyPreDelete(); }

void LatLonXform::GetCorner(Vec3<double>& out, int corner) const {
  if (IsCorner(corner))
    out = this->*kCorners[corner];
}

void LatLonXform::GetCorners(Vec3<double>* out, int) const {
  for (int corner = 0; corner < kCornerCount; ++corner)
    GetCorner(out[corner], corner);
}

void LatLonXform::SetCorner(const Vec3<double>& position, int corner) {
  if (IsCorner(corner) && IsPosition(position))
    Fields().corners[corner]->SetTypedObject(*this, position);
}

void LatLonXform::SetCorners(const Vec3<double>* positions, int count) {
  const int taken = std::clamp(count, 0, kCornerCount);
  if (!std::all_of(positions, positions + taken, IsPosition))
    return;
  for (int corner = 0; corner < taken; ++corner)
    this->*kCorners[corner] = positions[corner];
  Tell(taken);
}

/// All corners are in place already, also where the first one to hear of it asks for the last.
void LatLonXform::Tell(int taken) {
  const DeletionDeferrer deferrer;
  for (int corner = 0; corner < kCornerCount; ++corner) {
    const auto* const field = Fields().corners[corner];
    if (corner < taken)
      field->SetTypedObject(*this, this->*kCorners[corner]);
    else
      field->NotifyFieldChanged(*this);
  }
}

void LatLonXform::GetLatLonExtent(double& north, double& south, double& east, double& west) const {
  north = std::max({topLeft_.y, topRight_.y, bottomLeft_.y, bottomRight_.y});
  south = std::min({topLeft_.y, topRight_.y, bottomLeft_.y, bottomRight_.y});
  east = std::max({topLeft_.x, topRight_.x, bottomLeft_.x, bottomRight_.x});
  west = std::min({topLeft_.x, topRight_.x, bottomLeft_.x, bottomRight_.x});
}

void LatLonXform::SetLatLonExtent(double north, double south, double east, double west, Edge edge) {
  if (!IsExtent(north, south, east, west))
    return;
  NormalizeExtents(north, south, east, west, topRight_.x, bottomLeft_.x, edge);
  topLeft_.y = topRight_.y = north;
  bottomLeft_.y = bottomRight_.y = south;
  topRight_.x = bottomRight_.x = east;
  topLeft_.x = bottomLeft_.x = west;
  Tell(kCornerCount);
}

} // namespace vorrel::kestan
