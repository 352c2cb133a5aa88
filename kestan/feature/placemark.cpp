#include "kestan/feature/placemark.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/feature/placemarkschema.h"
#include "kestan/geometry/geometry.h" // the shape follows its placemark
#include "kestan/geometry/geometryschema.h"

namespace vorrel::kestan {

template class SchemaT<Placemark, NewInstancePolicy, NewDerivedPolicy>;

PlacemarkSchema::PlacemarkSchema()
    : SchemaT("Placemark", &AbstractFeature::GetClassSchema(), Namespace::kKml),
      geometry(*this, QString(), Geometry::GetClassSchema(), OffsetOf(&Placemark::geometry_)) {}

const Schema& Placemark::GetClassSchema() { return PlacemarkSchema::GetSingleton(); }

Placemark::Placemark(const KmlId& id, const QString& baseUrl)
    : Placemark(GetClassSchema(), id, baseUrl) {}

Placemark::Placemark(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractFeature(schema, id, baseUrl) {
  SetBit(kBitPlacemarkInit, true);
  if (&schema == &GetClassSchema())
    NotifyPostCreate();
}

Placemark::~Placemark() { NotifyPreDelete(); }

RefPtr<Placemark> Placemark::CreatePlacemark() {
  return RefPtr<Placemark>(new Placemark(KmlId(), QString()));
}

void Placemark::SetGeometry(Geometry* geometry) {
  PlacemarkSchema::GetSingleton().geometry.CheckSet(*this, geometry);
}

void Placemark::CollectStylesAndSchemas(WriteState& state) const {
  AbstractFeature::CollectStylesAndSchemas(state);
  // Only tracks carry data with schemas, and they make a feature a timed one: the other shapes need
  // no look.
  if (geometry_ && GetBit(kBitTimedFeature))
    geometry_->CollectSchemas(state);
}

void Placemark::NotifyInheritedRegionChanged() {
  if (geometry_ && HandsDown())
    geometry_->NotifyFieldChanged(GeometrySchema::GetSingleton().region);
  AbstractFeature::NotifyInheritedRegionChanged();
}

void Placemark::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

void Placemark::Accept(GeometryVisitorConst* visitor) const {
  if (geometry_)
    static_cast<const Geometry&>(*geometry_).accept(*visitor);
}

void Placemark::Accept(GeometryVisitor* visitor) {
  if (geometry_)
    geometry_->accept(*visitor);
}

bool Placemark::GetTimeRange(DateTime& begin, DateTime& end, int* instants, int* spans) const {
  if (!GetBit(kBitVisibility) || !GetBit(kBitInheritedVisibility))
    return false;
  const bool own = AbstractFeature::GetTimeRange(begin, end, instants, spans);
  return (geometry_ && geometry_->GetTimeRange(begin, end, instants, spans)) || own;
}

bool Placemark::IsTimedFeature() const {
  return AbstractFeature::IsTimedFeature() || (geometry_ && geometry_->GetBit(kBitTrack));
}

void Placemark::NotifyFieldChanged(const Field& field) {
  if (&field == &PlacemarkSchema::GetSingleton().geometry) {
    if (IsTimedFeature())
      s_add_timed_feature(*this);
    else
      s_rem_timed_feature(*this);
  }
  AbstractFeature::NotifyFieldChanged(field);
}

void Placemark::NotifyInheritedVisibilityChanged() {
  if (geometry_ && HandsDown())
    geometry_->UpdateInheritedVisibility();
  AbstractFeature::NotifyInheritedVisibilityChanged();
}

void Placemark::HandDown() {
  AbstractFeature::HandDown();
  if (geometry_ && GetInheritedRegion())
    geometry_->NotifyFieldChanged(GeometrySchema::GetSingleton().region);
}

} // namespace vorrel::kestan
