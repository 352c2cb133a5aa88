#include "kestan/overlay/abstractoverlay.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/host/system.h"
#include "kestan/link/fetchobserver.h"
#include "kestan/overlay/abstractoverlayschema.h"

namespace vorrel::kestan {

template class SchemaT<AbstractOverlay, NoInstancePolicy, NoDerivedPolicy>;

namespace {

const AbstractOverlaySchema& Fields() { return AbstractOverlaySchema::GetSingleton(); }

} // namespace

AbstractOverlaySchema::AbstractOverlaySchema()
    : SchemaT("AbstractOverlay", &AbstractFeature::GetClassSchema(), Namespace::kKml) {
  color.SetDefault(Color32(0xFFFFFFFF));
  drawOrder.SetDefault(0);
}

const Schema& AbstractOverlay::GetClassSchema() { return AbstractOverlaySchema::GetSingleton(); }

AbstractOverlay::AbstractOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractFeature(schema, id, baseUrl) {}

AbstractOverlay::~AbstractOverlay() = default;

void AbstractOverlay::SetIcon(Icon* icon) { Fields().icon.CheckSet(*this, icon); }

void AbstractOverlay::refresh() {
  if (icon_)
    icon_->refresh();
}

void AbstractOverlay::SetFetchState(net::FetchState state, const QString& text) {
  if (state == fetchState_)
    return;
  fetchState_ = state;
  fetchErrorText_ = text;
  Fields().fetchState.NotifyFieldChanged(*this);
}

void AbstractOverlay::SetImageSize(const Vec2<int>& size) {
  if (size == imageSize_)
    return;
  imageSize_ = size;
  Fields().imageSize.NotifyFieldChanged(*this);
}

void AbstractOverlay::ReNotifyPostCreate() {
  SetBit(kBitPostCreated, false);
  NotifyPostCreate();
}

void AbstractOverlay::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

void AbstractOverlay::NotifyFieldChanged(const Field& field) {
  const DeletionDeferrer deferrer;
  const AbstractOverlaySchema& fields = Fields();
  const bool isIcon = &field == &fields.icon;
  if (isIcon)
    OnIconChanged();
  const bool isPeriod = &field == &fields.refreshPeriod;
  hasRefreshPeriod_ = (hasRefreshPeriod_ || isPeriod) && GetBit(kBitBeingRead);
  // In a document the period means the same ahead of the image and behind it.
  if (icon_ && (isPeriod || (isIcon && hasRefreshPeriod_)))
    icon_->SetDeprecatedRefreshPeriod(refreshPeriod_);
  if (&field == &fields.fetchState)
    FetchObserver::Notify(this, icon_.get(), fetchState_);
  AbstractFeature::NotifyFieldChanged(field);
}

void AbstractOverlay::OnIconChanged() {
  if (activeIcon_ == icon_)
    return;
  // On another thread nobody fetches for it yet.
  if (activeIcon_ && fetchState_ < net::kFetchSucceeded && System::IsMainThread()) {
    const RefPtr<Icon> former = activeIcon_; // whatever observers do
    FetchObserver::Notify(this, former.get(), net::kFetchCancelled);
  }
  activeIcon_ = icon_;
}

/// So that the image dies with its place.
void AbstractOverlay::LeaveOwners() { activeIcon_.reset(); }

} // namespace vorrel::kestan
