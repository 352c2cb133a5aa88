#include "kestan/geometry/linearring.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/linearringschema.h"
#include "kestan/geometry/linestringschema.h"
#include "kestan/geometry/polygon.h"
#include "kestan/host/fastmath.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<LinearRing, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<LinearRing>;
template class ObjArrayField<LinearRing>;

LinearRingSchema::LinearRingSchema()
    : SchemaT("LinearRing", &LineString::GetClassSchema(), Namespace::kKml) {}

const Schema& LinearRing::GetClassSchema() { return LinearRingSchema::GetSingleton(); }

LinearRing::LinearRing(const KmlId& id, const QString& baseUrl)
    : LinearRing(nullptr, id, baseUrl) {}

LinearRing::LinearRing(AbstractFeature* feature, const KmlId& id, const QString& baseUrl)
    : LineString(GetClassSchema(), id, baseUrl), counterClockwise_(false), orientationDirty_(true),
      edgesDirty_(false) {
  Complete(feature);
}

LinearRing::~LinearRing() { NotifyPreDelete(); }

const mmvector<bool>* LinearRing::GetEdgeFlags() const {
  if (edgesDirty_)
    CalculateEdgeFlags();
  return edgeFlags_.empty() ? nullptr : &edgeFlags_;
}

void LinearRing::SetEdgeFlags(const unsigned char* flags, int count) {
  edgesDirty_ = false;
  edgeFlags_.clear();
  const auto isSet = [](unsigned char flag) { return flag != 0; };
  if (count < 1 || std::none_of(flags, flags + count, isSet))
    return;
  edgeFlags_.resize(static_cast<std::size_t>(count));
  std::transform(flags, flags + count, edgeFlags_.begin(), isSet);
}

bool LinearRing::IsInner() const { return GetBit(kBitRingRole) && !IsOuter(); }

bool LinearRing::IsOuter() const {
  if (!GetBit(kBitRingRole))
    return false;
  const auto* polygon = static_cast<const Polygon*>(GetOwner(0));
  return polygon && polygon->GetOuterBoundary() == this;
}

bool LinearRing::IsCounterClockwise() const {
  if (!orientationDirty_)
    return counterClockwise_;
  orientationDirty_ = false;
  double doubleArea = 0.0;
  if (GetCoordCount() > 3) {
    // Seen from one of the positions, since the products of small rings cancel each other out.
    const Vec3<double> origin = At(0);
    for (int i = 1; i < GetCoordCount(); ++i)
      doubleArea += (At(i - 1).x - origin.x) * (At(i).y - origin.y) -
                    (At(i - 1).y - origin.y) * (At(i).x - origin.x);
  }
  counterClockwise_ = doubleArea >= 0.0;
  return counterClockwise_;
}

void LinearRing::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void LinearRing::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

void LinearRing::SetCoord(int index, const Vec3<double>& coord) {
  if (index == 0)
    Coords().back() = coord;
  LineString::SetCoord(index, coord);
}

void LinearRing::SetCoordLonLat(int index, double longitude, double latitude) {
  if (index == 0)
    Coords().back() = {longitude, latitude, Coords().back().z};
  LineString::SetCoordLonLat(index, longitude, latitude);
}

void LinearRing::SetCoordAlt(int index, double altitude) {
  if (index == 0)
    Coords().back().z = altitude;
  SetAltitude(index, altitude);
}

int LinearRing::AddCoord(int index, const Vec3<double>& coord) {
  const DeletionDeferrer deferrer;
  const Vec3<double> added = coord; // may lie in the list that is about to grow
  if (Coords().empty())
    LineString::AddCoord(-1, added);
  else if (!IsClosed())
    Coords().push_back(index == -1 ? added : At(0));
  else if (index == -1)
    Coords().back() = added;
  return LineString::AddCoord(index, added);
}

void LinearRing::DelCoord(int index) {
  const int count = GetCoordCount();
  const int last = count == 2 ? 1 : count - 2;
  if (index < 0 || index > last)
    return;
  const int selected = GetSelectedCoord();
  if (selected == index && index == 0)
    MoveSelection(count > 2 ? count - 3 : -1);
  else if (selected >= index)
    MoveSelection(selected - 1);
  Coords().erase(Coords().begin() + index);
  if (count == 2)
    Coords().clear();
  else if (index == 0)
    Coords().back() = At(0);
  NotifyCoordsChanged();
}

void LinearRing::SetSelectedCoord(int index) {
  if (index == -1 || index < GetCoordCount() - 1)
    LineString::SetSelectedCoord(index);
}

void LinearRing::ReverseCoordOrder() {
  if (GetCoordCount() < 3)
    return;
  std::reverse(Coords().begin(), Coords().end() - 1);
  Coords().back() = At(0);
  NotifyCoordsChanged();
}

GeoBoundingBox<double> LinearRing::GetBBox() const { return CachedBBox(!GetBit(kBitRingRole)); }

void LinearRing::NotifyFieldChanged(const Field& field) {
  if (&field == &LinearRingSchema::GetSingleton().hiddenEdgeList) {
    edgesDirty_ = true;
  } else if (&field == &LineStringSchema::GetSingleton().coordinates) {
    orientationDirty_ = true;
    // The list may come before the positions that it speaks of.
    const auto edges = static_cast<std::size_t>(std::max(GetCoordCount() - 1, 0));
    const bool hasEdgeState = !edgeFlags_.empty() || !hiddenEdgeList_.empty();
    if (hasEdgeState && edgeFlags_.size() != edges)
      edgesDirty_ = true;
    ClampSelection(GetCoordCount() - 1);
  }
  LineString::NotifyFieldChanged(field);
}

void LinearRing::NotifyOwnerChanged() {
  const SchemaObject* owner = GetOwner(0);
  const bool inPolygon = owner && owner->isOfType(Polygon::GetClassSchema());
  if (inPolygon != GetBit(kBitRingRole)) {
    SetBit(kBitRingRole, inPolygon);
    SetBit(kBitGeometryDirty, true); // the box is made in another way
  }
  LineString::NotifyOwnerChanged();
}

bool LinearRing::IsClosed() const {
  const int last = GetCoordCount() - 1;
  return last > 0 && etalmostEquald(At(0).x, At(last).x) && etalmostEquald(At(0).y, At(last).y) &&
         etalmostEquald(At(0).z, At(last).z);
}

void LinearRing::CalculateEdgeFlags() const {
  edgesDirty_ = false;
  edgeFlags_.clear();
  if (hiddenEdgeList_.empty() || GetCoordCount() < 1)
    return;
  edgeFlags_.resize(static_cast<std::size_t>(GetCoordCount()) - 1);
  for (const unsigned short edge : hiddenEdgeList_) {
    if (edge < edgeFlags_.size())
      edgeFlags_[edge] = true;
  }
}

} // namespace vorrel::kestan
