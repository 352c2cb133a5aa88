#include "kestan/geometry/polygon.h"

#include "kestan/core/constructionguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/polygonschema.h"

namespace vorrel::kestan {

template class SchemaT<Polygon, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<Polygon>;

PolygonSchema::PolygonSchema() : SchemaT("Polygon", &Geometry::GetClassSchema(), Namespace::kKml) {}

const Schema& Polygon::GetClassSchema() { return PolygonSchema::GetSingleton(); }

Polygon::Polygon(const KmlId& id, const QString& baseUrl)
    : Geometry(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Polygon::Polygon(AbstractFeature* feature, const mmvector<Vec3<double>>& outer,
                 const unsigned char* edgeFlags, const KmlId& id, const QString& baseUrl)
    : Geometry(GetClassSchema(), id, baseUrl) {
  const ConstructionGuard building(*this);
  {
    const NotificationDisabler disabler;
    const RefPtr<LinearRing> ring(new LinearRing(KmlId(), baseUrl));
    ring->SetCoords(outer.data(), static_cast<int>(outer.size()));
    SetOuterBoundaryNoNotification(ring.get());
    if (edgeFlags)
      ring->SetEdgeFlags(edgeFlags, ring->GetCoordCount() - 1);
  }
  Complete(feature);
}

Polygon::~Polygon() { NotifyPreDelete(); }

void Polygon::SetOuterBoundary(LinearRing* ring) {
  PolygonSchema::GetSingleton().outerBoundaryIs.CheckSet(*this, ring);
}

bool Polygon::SetOuterBoundaryNoNotification(LinearRing* ring) {
  return ring != outerBoundary_ &&
         PolygonSchema::GetSingleton().outerBoundaryIs.Replace(*this, ring);
}

bool Polygon::AddInnerBoundary(LinearRing* ring) {
  return PolygonSchema::GetSingleton().innerBoundaryIs.add(*this, ring);
}

bool Polygon::AddInnerBoundary(int index, LinearRing* ring) {
  return InsertInnerBoundary(index, ring);
}

bool Polygon::InsertInnerBoundary(int index, LinearRing* ring) {
  return PolygonSchema::GetSingleton().innerBoundaryIs.insert(*this, ring, index);
}

bool Polygon::SetInnerBoundary(int index, LinearRing* ring) {
  return PolygonSchema::GetSingleton().innerBoundaryIs.set(*this, ring, index);
}

bool Polygon::DelInnerBoundary(int index) {
  return PolygonSchema::GetSingleton().innerBoundaryIs.remove(*this, index);
}

bool Polygon::RemInnerBoundary(LinearRing* ring) {
  return PolygonSchema::GetSingleton().innerBoundaryIs.remove(*this, ring);
}

int Polygon::FindInnerBoundary(const LinearRing* ring) const {
  return ring ? PolygonSchema::GetSingleton().innerBoundaryIs.FindObject(*this, *ring) : -1;
}

void Polygon::ReverseInnerBoundaryOrder() {
  PolygonSchema::GetSingleton().innerBoundaryIs.reverse(*this);
}

void Polygon::MakeCounterClockwise() {
  ForEachRing([this](LinearRing& ring) {
    if (ring.IsCounterClockwise() != (&ring == outerBoundary_.get()))
      ring.ReverseCoordOrder();
  });
}

void Polygon::RequireParentInheritedVisibility(bool update) {
  ForEachRing([](LinearRing& ring) { ring.RequireParentInheritedVisibility(false); });
  Geometry::RequireParentInheritedVisibility(update);
}

void Polygon::NotifyInheritedVisibilityChanged() {
  ForEachRing([](LinearRing& ring) { ring.UpdateInheritedVisibility(); });
  Geometry::NotifyInheritedVisibilityChanged();
}

void Polygon::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void Polygon::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

double Polygon::GetAltitudeOffset() const {
  return outerBoundary_ ? outerBoundary_->GetAltitudeOffset() : 0.0;
}

void Polygon::SetAltitudes(const double* values, int count) {
  ForEachRing([&](LinearRing& ring) {
    if (count <= 0)
      return;
    ring.SetAltitudes(values, count);
    values += ring.GetCoordCount();
    count -= ring.GetCoordCount();
  });
}

void Polygon::GetAltitudes(mmvector<double>& out) const {
  ForEachRing([&out](const LinearRing& ring) { ring.GetAltitudes(out); });
}

void Polygon::SetAltitude(double altitude) {
  ForEachRing([altitude](LinearRing& ring) { ring.SetAltitude(altitude); });
}

const Vec3<double>* Polygon::GetCoords(int& count) const {
  count = 0;
  return nullptr;
}

int Polygon::GetCoordCount() const {
  int count = 0;
  ForEachRing([&count](const LinearRing& ring) { count += ring.GetCoordCount(); });
  return count;
}

void Polygon::NotifyCoordsChanged() {
  ForEachRing([](LinearRing& ring) { ring.NotifyCoordsChanged(); });
}

GeoBoundingBox<double> Polygon::GetBBox() const {
  return outerBoundary_ ? outerBoundary_->GetBBox() : GeoBoundingBox<double>();
}

template <class Visit> void Polygon::ForEachRing(Visit visit) const {
  const DeletionDeferrer deferrer;
  // An observer may change the rings while one of them is told.
  if (const RefPtr<LinearRing> ring = outerBoundary_)
    visit(*ring);
  for (std::size_t i = 0; i < innerBoundaries_.size(); ++i) {
    if (const RefPtr<LinearRing> ring = innerBoundaries_[i])
      visit(*ring);
  }
}

} // namespace vorrel::kestan
