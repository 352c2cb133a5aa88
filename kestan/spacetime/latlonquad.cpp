#include "kestan/spacetime/latlonquad.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/abstractxformschema.h"
#include "kestan/spacetime/latlonquadschema.h"

#include <algorithm>
#include <limits>

namespace vorrel::kestan {

template class SchemaT<LatLonQuad, NewInstancePolicy, NoDerivedPolicy>;

namespace {

/// Where each corner is in the list.
constexpr std::size_t kPlaces[] = {3, 2, 0, 1};

const LatLonQuadSchema& Fields() { return LatLonQuadSchema::GetSingleton(); }

bool IsCorner(int corner) { return corner >= 0 && corner < AbstractXform::kCornerCount; }

} // namespace

LatLonQuadSchema::LatLonQuadSchema()
    : SchemaT("LatLonQuad", &AbstractXform::GetClassSchema(), Namespace::kExt) {}

const Schema& LatLonQuad::GetClassSchema() { return LatLonQuadSchema::GetSingleton(); }

LatLonQuad::LatLonQuad(const KmlId& id, const QString& baseUrl)
    : AbstractXform(GetClassSchema(), id, baseUrl), coordinates_(kCornerCount) {
  NotifyPostCreate();
}

LatLonQuad::~LatLonQuad() { NotifyPreDelete(); }

void LatLonQuad::GetCorner(Vec3<double>& out, int corner) const {
  if (!IsCorner(corner))
    return;
  const std::size_t place = kPlaces[corner];
  out = place < coordinates_.size() ? coordinates_[place] : Vec3<double>();
}

void LatLonQuad::GetCorners(Vec3<double>* out, int) const {
  for (int corner = 0; corner < kCornerCount; ++corner)
    GetCorner(out[corner], corner);
}

/// True for a change.
bool LatLonQuad::SetEntry(const Vec3<double>& position, int corner) {
  Vec3<double>& entry = coordinates_[kPlaces[corner]];
  if (entry == position)
    return false;
  entry = position;
  return true;
}

void LatLonQuad::SetCorner(const Vec3<double>& position, int corner) {
  if (!IsCorner(corner) || !IsPosition(position))
    return;
  coordinates_.resize(kCornerCount);
  if (SetEntry(position, corner))
    Fields().coordinates.NotifyFieldChanged(*this);
}

void LatLonQuad::SetCorners(const Vec3<double>* positions, int) {
  if (!std::all_of(positions, positions + kCornerCount, IsPosition))
    return;
  coordinates_.resize(kCornerCount);
  bool hasChanged = false;
  for (int corner = 0; corner < kCornerCount; ++corner)
    hasChanged = SetEntry(positions[corner], corner) || hasChanged;
  if (hasChanged)
    Fields().coordinates.NotifyFieldChanged(*this);
}

void LatLonQuad::GetLatLonExtent(double& north, double& south, double& east, double& west) const {
  north = east = std::numeric_limits<double>::lowest();
  south = west = std::numeric_limits<double>::max();
  for (const Vec3<double>& position : coordinates_) {
    north = std::max(north, position.y);
    south = std::min(south, position.y);
    east = std::max(east, position.x);
    west = std::min(west, position.x);
  }
}

void LatLonQuad::SetLatLonExtent(double north, double south, double east, double west, Edge) {
  if (!IsExtent(north, south, east, west))
    return;
  coordinates_.resize(kCornerCount);
  const Vec3<double> edges[] = {
      {west, south, 0.0}, {east, south, 0.0}, {east, north, 0.0}, {west, north, 0.0}};
  for (std::size_t i = 0; i < coordinates_.size(); ++i)
    coordinates_[i] = {edges[i].x, edges[i].y, coordinates_[i].z};
  Fields().coordinates.NotifyFieldChanged(*this);
}

void LatLonQuad::NotifyFieldChanged(const Field& field) {
  isGiven_ = isGiven_ || &field == &Fields().coordinates;
  AbstractXform::NotifyFieldChanged(field);
}

void LatLonQuad::CopyNonFieldStuff(const SchemaObject& src) {
  isGiven_ = !src.isOfType(GetClassSchema()) || static_cast<const LatLonQuad&>(src).isGiven_;
  AbstractXform::CopyNonFieldStuff(src);
}

void LatLonQuad::WriteKmlFields(WriteState& state) const {
  if (GetBit(kBitWasRead) && !isGiven_ && !HasKeptValue(Fields().coordinates))
    WriteUnknownFields(state);
  else
    AbstractXform::WriteKmlFields(state);
}

} // namespace vorrel::kestan
