#include "kestan/geometry/geometry.h"

#include "kestan/core/constructionguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/geometry/geometryschema.h"
#include "kestan/geometry/linestringschema.h"
#include "kestan/geometry/multigeometry.h"

namespace vorrel::kestan {

template class SchemaT<Geometry, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<Geometry>;
template class ObjArrayField<Geometry>;

GeometrySchema::GeometrySchema() : SchemaT("Geometry", nullptr, Namespace::kKml) {
  name.SetDefault(QString());
  drawOrder.SetDefault(0);
}

const Schema& Geometry::GetClassSchema() { return GeometrySchema::GetSingleton(); }

Geometry::Geometry(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl),
      drawOrder_(GeometrySchema::GetSingleton().drawOrder.GetDefault()) {
  // A shape is visible only through its feature.
  SetBit(kBitInheritedVisibility, false);
  SetBit(kBitVisibleWithoutOwner, false);
  SetBit(kBitGeometryDirty, true);
}

void Geometry::Complete(AbstractFeature* feature) {
  const ConstructionGuard building(*this);
  const DeletionDeferrer deferrer;
  for (const Field* field : feature ? feature->GetSchema().GetObjectFields() : mmvector<Field*>()) {
    if (!field->IsArray() && !field->GetObject(*feature, -1) && field->set(*feature, this, -1))
      break;
  }
  NotifyPostCreate();
}

void Geometry::BoundChanged() { NotifyFieldChanged(GeometrySchema::GetSingleton().bound); }

void Geometry::SetAltitudeMode(AltitudeMode mode) {
  GeometrySchema::GetSingleton().altitudeMode.CheckSet(*this, mode);
}

void Geometry::SetTessellate(bool tessellate) {
  GeometrySchema::GetSingleton().tessellate.CheckSet(*this, tessellate);
}

void Geometry::SetExtrude(bool extrude) {
  GeometrySchema::GetSingleton().extrude.CheckSet(*this, extrude);
}

void Geometry::SetCoords(const Vec3<double>*, int) {}

bool Geometry::GetTimeRange(DateTime&, DateTime&, int*, int*) const { return false; }

void Geometry::NotifyCoordAltsChanged() {
  NotifyFieldChanged(GeometrySchema::GetSingleton().altBound);
}

void Geometry::NotifySelectionChanged() {
  NotifyFieldChanged(GeometrySchema::GetSingleton().selection);
}

CullRect Geometry::GetBounds() const { return CullRect::CopyFrom(GetBBox()); }

QString Geometry::GetInheritedName() const {
  if (!name_.isNull())
    return name_;
  const SchemaObject* owner = GetOwner(0);
  if (owner && owner->isOfType(GetClassSchema()))
    return static_cast<const Geometry*>(owner)->GetInheritedName();
  return feature_ ? feature_->GetName() : QString();
}

void Geometry::SetName(const QString& name) {
  GeometrySchema::GetSingleton().name.CheckSet(*this, name);
}

void Geometry::SetDrawOrder(int order) {
  GeometrySchema::GetSingleton().drawOrder.CheckSet(*this, order);
}

void Geometry::CollectSchemas(WriteState&) const {}

bool Geometry::IsGiven(const Field& field) const {
  return &field != &GeometrySchema::GetSingleton().drawOrder || drawOrderSet_;
}

void Geometry::SetNotGiven(const Field& field) {
  if (&field == &GeometrySchema::GetSingleton().drawOrder)
    drawOrderSet_ = false;
}

void Geometry::NotifyFieldChanged(const Field& field) {
  const DeletionDeferrer deferrer;
  const GeometrySchema& schema = GeometrySchema::GetSingleton();
  if (&field == &schema.feature)
    UpdateFeature();
  else if (&field == &schema.drawOrder)
    drawOrderSet_ = true;

  const bool movesBounds = &field != &schema.visibility && &field != &schema.selection &&
                           &field != &schema.feature &&
                           &field != &LineStringSchema::GetSingleton().extrudeWidth;
  if (movesBounds) {
    SetBit(kBitGeometryDirty, true);
    SchemaObject* const owner = GetOwner(0);
    // A collection that is out of date tells those around it again only where somebody listens:
    // else each change in a deep nest would climb from every level.
    if (owner && owner->isOfType(GetClassSchema()) &&
        (!owner->GetBit(kBitGeometryDirty) || static_cast<Geometry*>(owner)->IsHeard()))
      owner->NotifyFieldChanged(schema.bound);
  }
  SchemaObject::NotifyFieldChanged(field);
}

void Geometry::NotifyInheritedVisibilityChanged() {
  NotifyFieldChanged(GeometrySchema::GetSingleton().visibility);
}

void Geometry::NotifyOwnerChanged() {
  const DeletionDeferrer deferrer;
  SchemaObject::NotifyOwnerChanged();
  NotifyFieldChanged(GeometrySchema::GetSingleton().feature);
}

bool Geometry::IsHeard() const {
  const SchemaObject* object = this;
  while (object && !object->HasObservers())
    object = object->GetOwner(0);
  return object != nullptr;
}

bool Geometry::TakeBoundsDirty() const {
  if (!GetBit(kBitGeometryDirty))
    return false;
  // The flag belongs to the cache, which is filled on read.
  const_cast<Geometry*>(this)->SetBit(kBitGeometryDirty, false);
  return true;
}

bool Geometry::UpdateFeature() {
  AbstractFeature* const former = feature_;
  SchemaObject* const owner = GetOwner(0);
  if (owner && owner->isOfType(AbstractFeature::GetClassSchema()))
    feature_ = static_cast<AbstractFeature*>(owner);
  else if (owner && owner->isOfType(MultiGeometry::GetClassSchema()))
    feature_ =
        static_cast<MultiGeometry*>(owner)->feature_; // brought up to date before its members
  else
    feature_ = nullptr;
  return feature_ != former;
}

} // namespace vorrel::kestan
