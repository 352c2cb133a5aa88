#include "kestan/feature/visibilityobserver.h"

namespace vorrel::kestan {

ObserverList AbstractFeature::VisibilityObserver::s_observers;

AbstractFeature::VisibilityObserver::VisibilityObserver() { s_observers.Add(*this); }

AbstractFeature::VisibilityObserver::~VisibilityObserver() = default;

void AbstractFeature::VisibilityObserver::Notify(AbstractFeature& feature) {
  const Event event{feature};
  s_observers.Dispatch([&event](Observer& observer) {
    static_cast<VisibilityObserver&>(observer).OnVisibilityChanged(event);
  });
}

} // namespace vorrel::kestan
