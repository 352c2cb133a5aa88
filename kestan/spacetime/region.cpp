#include "kestan/spacetime/region.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfolder.h"
#include "kestan/host/fastmath.h"
#include "kestan/host/system.h"
#include "kestan/spacetime/regionschema.h"

#include <cmath>
#include <cstddef>

namespace vorrel::kestan {

template class SchemaT<Region, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Region>;

namespace {

const RegionSchema& Fields() { return RegionSchema::GetSingleton(); }

/// From where on content stands in for another feature, when the client says so, and when it comes
/// into sight or goes.
constexpr float kOpaque = 0.99F;
constexpr float kWhollyOpaque = 1.0F;

} // namespace

/// Lives while a feature is hidden or shown. That may change the visibility of regions, which then
/// hide and show others: these take their turns when the outermost one ends, so that no chain of
/// them overflows the stack. Each has one turn, so that none goes on for ever, and only so many
/// have one: the others follow by their own updates.
class Region::Hiding {
public:
  Hiding() : outermost_(s_outermost ? s_outermost : this) { s_outermost = outermost_; }
  Hiding(const Hiding&) = delete;
  Hiding& operator=(const Hiding&) = delete;
  ~Hiding() {
    if (outermost_ != this)
      return;
    for (std::size_t i = 0; i < waiting_.size(); ++i) {
      const RefPtr<Region> region = waiting_[i];
      region->HideReplaced(kWhollyOpaque);
    }
    for (const RefPtr<Region>& region : waiting_)
      region->isHiding_ = false;
    s_outermost = nullptr;
  }

  void Add(Region& region) {
    if (region.isHiding_ || region.GetRefCount() == 0 || outermost_->waiting_.size() == kMaxTurns)
      return;
    region.isHiding_ = true;
    outermost_->waiting_.emplace_back(&region);
  }

private:
  /// More than a globe has levels of detail.
  static constexpr std::size_t kMaxTurns = 32;
  static thread_local Hiding* s_outermost;

  const DeletionDeferrer deferrer_;
  Hiding* const outermost_;
  mmvector<RefPtr<Region>> waiting_;
};

thread_local Region::Hiding* Region::Hiding::s_outermost = nullptr;

void RegionBoxField::WriteKml(const SchemaObject& object, WriteState& state) const {
  const SchemaObject* const box = GetObject(object, -1);
  if (!box || !static_cast<const LatLonAltBox&>(*box).StandsIn())
    ObjField::WriteKml(object, state);
}

RegionSchema::RegionSchema() : SchemaT("Region", nullptr, Namespace::kKml) {}

const Schema& Region::GetClassSchema() { return RegionSchema::GetSingleton(); }

Region::Region(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Region::~Region() { NotifyPreDelete(); }

/// It dies: what stood behind it is seen again.
void Region::LeaveOwners() {
  if (!replacedFeature_.get())
    return;
  UpdateFeatureToReplace();
  const RefPtr<AbstractFeature> feature(replacedFeature_.get());
  replacedFeature_.set(nullptr);
  if (feature)
    Hide(*feature, false);
}

LatLonAltBox* Region::GetLatLonAltBox() const {
  if (!latLonAltBox_) {
    const RefPtr<LatLonAltBox> globe(new LatLonAltBox(90.0, -90.0, 180.0, -180.0));
    globe->standsIn_ = true;
    Fields().latLonAltBox.Replace(const_cast<Region&>(*this), globe.get());
  }
  return latLonAltBox_.get();
}

void Region::SetLatLonAltBox(LatLonAltBox* box) { Fields().latLonAltBox.CheckSet(*this, box); }

void Region::SetLod(Lod* lod) { Fields().lod.CheckSet(*this, lod); }

void Region::UpdateExtents() const {
  if (!latLonAltBox_ ||
      (flatnessRevision_ && static_cast<std::int32_t>(GetRevision() - *flatnessRevision_) <= 0))
    return;
  double north = 0.0;
  double south = 0.0;
  double east = 0.0;
  double west = 0.0;
  latLonAltBox_->GetLatLonExtent(north, south, east, west);
  flatness_ = math::ComputeFlatness(north, south, east, west,
                                    static_cast<double>(latLonAltBox_->GetAdjustedMinAltitude()),
                                    static_cast<double>(latLonAltBox_->GetAdjustedMaxAltitude()));
  flatnessRevision_ = ObjectObserver::s_revision_counter_.load(std::memory_order_relaxed);
}

AbstractFeature* Region::FindFeatureToReplace() const {
  if (!lod_ || lod_->GetHrefToReplace().isEmpty())
    return nullptr;
  SchemaObject* const object = find(MakeAbsoluteId(lod_->GetBaseUrl(), lod_->GetHrefToReplace()));
  return object && object->isOfType(AbstractFeature::GetClassSchema())
             ? static_cast<AbstractFeature*>(object)
             : nullptr;
}

void Region::UpdateFeatureToReplace() {
  const RefPtr<AbstractFeature> held(replacedFeature_.get());
  if (lod_ && !lod_->GetHrefToReplace().isEmpty()) {
    const std::uint32_t revision = lod_->GetRevision();
    if (held && static_cast<std::int32_t>(revision - replaceRevision_) <= 0)
      return;
    replaceRevision_ = revision;
  } else if (!held) {
    return;
  }
  const RefPtr<AbstractFeature> target(FindFeatureToReplace());
  if (target == held)
    return;
  const DeletionDeferrer deferrer;
  replacedFeature_.set(target.get());
  if (held)
    Hide(*held, false);
  if (target && target == replacedFeature_.get())
    Hide(*target, active_);
}

bool Region::Update(BoundingVolume::Result result, float opacity) {
  const DeletionDeferrer deferrer;
  UpdateFeatureToReplace();
  const std::uint32_t frame = System::s_cur_frame;
  lastResult_ = result;
  lastUpdateFrame_ = frame;
  if (std::isnan(opacity))
    opacity = 0.0F;
  const bool nowActive = result != BoundingVolume::kOutside && opacity > 0.0F;
  if (nowActive)
    MarkActive(frame);
  if (opacity != lodOpacity_) {
    lodOpacity_ = opacity;
    Fields().lodOpacity.NotifyFieldChanged(*this);
  }
  if (nowActive != active_) {
    active_ = nowActive;
    Fields().active.NotifyFieldChanged(*this);
  }
  HideReplaced(kOpaque);
  return nowActive;
}

void Region::MarkActive(std::uint32_t frame) {
  lastActiveFrame_ = frame;
  SchemaObject* const owner = GetOwner(0);
  if (!owner || !owner->isOfType(AbstractFeature::GetClassSchema()))
    return;
  for (const AbstractFeature* above = static_cast<AbstractFeature*>(owner)->GetParent(); above;
       above = above->GetParent()) {
    if (Region* const region = above->GetRegion())
      region->lastActiveFrame_ = frame;
  }
}

void Region::Hide(AbstractFeature& feature, bool hidden) {
  const Hiding hiding;
  feature.SetHiddenByLod(hidden);
}

/// Hides the feature that is replaced while this region itself is to be seen, and shows it
/// otherwise.
void Region::HideReplaced(float leastOpacity) {
  const RefPtr<AbstractFeature> feature(replacedFeature_.get());
  if (feature)
    Hide(*feature, active_ && lodOpacity_ >= leastOpacity && GetBit(kBitInheritedVisibility));
}

void Region::NotifyFieldChanged(const Field& field) {
  const DeletionDeferrer deferrer;
  if (&field == &Fields().visibility && replacedFeature_.get())
    Hiding().Add(*this);
  SchemaObject::NotifyFieldChanged(field);
}

void Region::NotifyInheritedVisibilityChanged() { Fields().visibility.NotifyFieldChanged(*this); }

} // namespace vorrel::kestan
