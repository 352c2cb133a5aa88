#include "kestan/spacetime/featureview.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/overlay/photooverlay.h" // what each kind of view shows
#include "kestan/spacetime/featureviewschema.h"
#include "kestan/tour/tour.h"
#include "kestan/write/writestate.h"

#include <utility>

namespace vorrel::kestan {

template class SchemaT<FeatureView, NoInstancePolicy, NoDerivedPolicy>;
template class SchemaT<TourView, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<PhotoOverlayView, NewInstancePolicy, NoDerivedPolicy>;
template class SchemaT<BoundingBoxView, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<SchemaObject>;

FeatureViewSchema::FeatureViewSchema()
    : SchemaT("FeatureView", nullptr, Namespace::kKml),
      feature(*this, QString(), AbstractFeature::GetClassSchema(), OffsetOf(&FeatureView::feature_),
              Field::kNoWrite) {}

TourViewSchema::TourViewSchema()
    : SchemaT("TourView", &FeatureView::GetClassSchema(), Namespace::kKml) {}

PhotoOverlayViewSchema::PhotoOverlayViewSchema()
    : SchemaT("PhotoOverlayView", &FeatureView::GetClassSchema(), Namespace::kKml) {}

BoundingBoxViewSchema::BoundingBoxViewSchema()
    : SchemaT("BoundingBoxView", &FeatureView::GetClassSchema(), Namespace::kKml) {}

const Schema& FeatureView::GetClassSchema() { return FeatureViewSchema::GetSingleton(); }

FeatureView::FeatureView(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractView(schema, id, baseUrl) {}

FeatureView::~FeatureView() = default;

AbstractFeature* FeatureView::GetFeature() const {
  return static_cast<AbstractFeature*>(feature_.get());
}

bool FeatureView::SetFeatureOf(const Schema& schema, AbstractFeature* feature) {
  if (feature && (!feature->isOfType(schema) || feature->GetBit(kBitDeleting)))
    return feature_.get() != nullptr;
  const RefPtr<SchemaObject> former =
      std::exchange(feature_, RefPtr<SchemaObject>(feature)); // it may be the end of it
  return true;
}

bool FeatureView::AlmostEqual(AbstractView* other) const {
  return other && other->isOfType(GetClassSchema()) &&
         feature_ == static_cast<const FeatureView&>(*other).feature_;
}

/// A feature that stands nowhere else came with the view.
void FeatureView::WriteKmlFields(WriteState& state) const {
  if (feature_ && !feature_->GetHome() && state.CheckDepth())
    feature_->WriteKml(state);
  AbstractView::WriteKmlFields(state);
}

const Schema& TourView::GetClassSchema() { return TourViewSchema::GetSingleton(); }

TourView::TourView(const KmlId& id, const QString& baseUrl)
    : FeatureView(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

TourView::~TourView() { NotifyPreDelete(); }

bool TourView::SetFeature(AbstractFeature* feature) {
  return SetFeatureOf(Tour::GetClassSchema(), feature);
}

const Schema& PhotoOverlayView::GetClassSchema() { return PhotoOverlayViewSchema::GetSingleton(); }

PhotoOverlayView::PhotoOverlayView(const KmlId& id, const QString& baseUrl)
    : FeatureView(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

PhotoOverlayView::~PhotoOverlayView() { NotifyPreDelete(); }

bool PhotoOverlayView::SetFeature(AbstractFeature* feature) {
  return SetFeatureOf(PhotoOverlay::GetClassSchema(), feature);
}

const Schema& BoundingBoxView::GetClassSchema() { return BoundingBoxViewSchema::GetSingleton(); }

BoundingBoxView::BoundingBoxView(const KmlId& id, const QString& baseUrl)
    : FeatureView(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

BoundingBoxView::~BoundingBoxView() { NotifyPreDelete(); }

bool BoundingBoxView::SetFeature(AbstractFeature* feature) {
  return SetFeatureOf(AbstractFeature::GetClassSchema(), feature);
}

} // namespace vorrel::kestan
