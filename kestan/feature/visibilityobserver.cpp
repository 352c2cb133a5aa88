#include "kestan/feature/visibilityobserver.h"

#include "kestan/core/deletiondeferrer.h"

namespace vorrel::kestan {

ObserverList AbstractFeature::VisibilityObserver::s_observers;

AbstractFeature::VisibilityObserver::VisibilityObserver() { s_observers.Add(*this); }

AbstractFeature::VisibilityObserver::~VisibilityObserver() = default;

void AbstractFeature::VisibilityObserver::Notify(AbstractFeature& feature) {
  const DeletionDeferrer deferrer;
  const Event event{feature};
  s_observers.Dispatch([&event](Observer& observer) {
    if (!event.feature.GetBit(kBitDeleting))
      static_cast<VisibilityObserver&>(observer).OnVisibilityChanged(event);
  });
}

} // namespace vorrel::kestan
