#include "kestan/geometry/multigeometry.h"

#include "kestan/core/bitguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/geometry/geometryschema.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/multigeometryschema.h"

namespace vorrel::kestan {

template class SchemaT<MultiGeometry, NewInstancePolicy, NoDerivedPolicy>;

GeometryCollectionSchema::GeometryCollectionSchema()
    : Schema("GeometryCollection", sizeof(MultiGeometry), &Geometry::GetClassSchema(),
             Namespace::kKml, false) {}

RefPtr<SchemaObject> GeometryCollectionSchema::CreateInstance(const KmlId& id,
                                                              const QString& baseUrl,
                                                              MemoryManager* manager) const {
  return MultiGeometry::GetClassSchema().CreateInstance(id, baseUrl, manager);
}

MultiGeometrySchema::MultiGeometrySchema()
    : SchemaT("MultiGeometry", &Geometry::GetClassSchema(), Namespace::kKml) {}

const Schema& MultiGeometry::GetClassSchema() { return MultiGeometrySchema::GetSingleton(); }

MultiGeometry::MultiGeometry(const KmlId& id, const QString& baseUrl)
    : MultiGeometry(nullptr, id, baseUrl) {}

MultiGeometry::MultiGeometry(AbstractFeature* feature, const KmlId& id, const QString& baseUrl)
    : MultiGeometry(GetClassSchema(), id, baseUrl) {
  Complete(feature);
}

MultiGeometry::MultiGeometry(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : Geometry(schema, id, baseUrl) {}

MultiGeometry::~MultiGeometry() { NotifyPreDelete(); }

void MultiGeometry::ReverseGeometryOrder() {
  MultiGeometrySchema::GetSingleton().geometries.reverse(*this);
}

void MultiGeometry::RequireParentInheritedVisibility(bool update) {
  const DeletionDeferrer deferrer;
  ForEach([](Geometry& geometry) { geometry.RequireParentInheritedVisibility(false); });
  Geometry::RequireParentInheritedVisibility(update);
}

void MultiGeometry::accept(GeometryVisitorConst& visitor) const { visitor.visit(*this); }

void MultiGeometry::accept(GeometryVisitor& visitor) { visitor.visit(*this); }

void MultiGeometry::SetAltitudeMode(AltitudeMode mode) {
  const DeletionDeferrer deferrer;
  altitudeMode_ = mode;
  ForEach([mode](Geometry& geometry) { geometry.SetAltitudeMode(mode); });
  GeometrySchema::GetSingleton().altitudeMode.NotifyFieldChanged(*this);
}

void MultiGeometry::SetTessellate(bool tessellate) {
  const DeletionDeferrer deferrer;
  SetBit(kBitTessellate, tessellate);
  ForEach([tessellate](Geometry& geometry) { geometry.SetTessellate(tessellate); });
  GeometrySchema::GetSingleton().tessellate.NotifyFieldChanged(*this);
}

void MultiGeometry::SetExtrude(bool extrude) {
  const DeletionDeferrer deferrer;
  SetBit(kBitExtrude, extrude);
  ForEach([extrude](Geometry& geometry) { geometry.SetExtrude(extrude); });
  GeometrySchema::GetSingleton().extrude.NotifyFieldChanged(*this);
}

void MultiGeometry::SetAltitudes(const double* values, int count) {
  ForEach([&](Geometry& geometry) {
    if (count < 1)
      return;
    geometry.SetAltitudes(values, count);
    values += geometry.GetCoordCount();
    count -= geometry.GetCoordCount();
  });
}

void MultiGeometry::GetAltitudes(mmvector<double>& out) const {
  ForEach([&out](const Geometry& geometry) { geometry.GetAltitudes(out); });
}

void MultiGeometry::SetAltitude(double altitude) {
  ForEach([altitude](Geometry& geometry) { geometry.SetAltitude(altitude); });
}

const Vec3<double>* MultiGeometry::GetCoords(int& count) const {
  count = 0;
  return nullptr;
}

int MultiGeometry::GetCoordCount() const {
  int count = 0;
  ForEach([&count](const Geometry& geometry) { count += geometry.GetCoordCount(); });
  return count;
}

void MultiGeometry::NotifyCoordsChanged() {
  ForEach([](Geometry& geometry) { geometry.NotifyCoordsChanged(); });
}

GeoBoundingBox<double> MultiGeometry::GetBBox() const {
  if (TakeBoundsDirty()) {
    bbox_ = GeoBoundingBox<double>();
    ForEach([this](const Geometry& geometry) { bbox_.add(geometry.GetBBox()); });
  }
  return bbox_;
}

void MultiGeometry::NotifyFieldChanged(const Field& field) {
  const DeletionDeferrer deferrer;
  const Field& ownField = GetMembersField();
  if (&field == &MultiGeometrySchema::GetSingleton().geometries && &field != &ownField) {
    NotifyFieldChanged(ownField);
    return;
  }
  const GeometrySchema& schema = GeometrySchema::GetSingleton();
  // Members take the feature from here. Without a change they have it, which keeps deep nests of
  // collections from being walked again for each level that is put around them.
  if (&field == &schema.region || (&field == &schema.feature && UpdateFeature()))
    TellMembers([&field](Geometry& geometry) { geometry.NotifyFieldChanged(field); });
  Geometry::NotifyFieldChanged(field);
}

void MultiGeometry::NotifyInheritedVisibilityChanged() {
  const DeletionDeferrer deferrer;
  TellMembers([](Geometry& geometry) { geometry.UpdateInheritedVisibility(); });
  Geometry::NotifyInheritedVisibilityChanged();
}

bool MultiGeometry::AddGeometry(Geometry& geometry) {
  return MultiGeometrySchema::GetSingleton().geometries.add(*this, &geometry);
}

bool MultiGeometry::RemGeometry(Geometry& geometry) {
  return MultiGeometrySchema::GetSingleton().geometries.remove(*this, &geometry);
}

bool MultiGeometry::InsertGeometry(int index, Geometry& geometry) {
  return MultiGeometrySchema::GetSingleton().geometries.insert(*this, &geometry, index);
}

bool MultiGeometry::RemGeometry(int index) {
  return MultiGeometrySchema::GetSingleton().geometries.remove(*this, index);
}

bool MultiGeometry::SetGeometry(int index, Geometry& geometry) {
  return MultiGeometrySchema::GetSingleton().geometries.set(*this, &geometry, index);
}

int MultiGeometry::FindGeometry(const Geometry& geometry) const {
  return MultiGeometrySchema::GetSingleton().geometries.FindObject(*this, geometry);
}

const Field& MultiGeometry::GetMembersField() const {
  return MultiGeometrySchema::GetSingleton().geometries;
}

/// Hands something down. Where nobody listens, members keep it to themselves: in a deep nest the
/// news of each of them would climb through all levels. So would the question who listens, if those
/// asked it that were made silent.
template <class Visit> void MultiGeometry::TellMembers(Visit visit) const {
  const bool isHeard = !GetBit(kBitNoFieldNotify) && IsHeard();
  ForEach([&](Geometry& geometry) {
    const BitGuard guard(&geometry, kBitNoFieldNotify,
                         geometry.GetBit(kBitNoFieldNotify) ||
                             (!isHeard && !geometry.HasObservers()));
    visit(geometry);
  });
}

template <class Visit> void MultiGeometry::ForEach(Visit visit) const {
  const DeletionDeferrer deferrer;
  // An observer may change the list while a member is told.
  for (std::size_t i = 0; i < geometries_.size(); ++i) {
    if (const RefPtr<Geometry> geometry = geometries_[i])
      visit(*geometry);
  }
}

} // namespace vorrel::kestan
