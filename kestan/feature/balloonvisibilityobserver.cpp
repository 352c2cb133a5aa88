#include "kestan/feature/balloonvisibilityobserver.h"

#include "kestan/core/watcher.h"
#include "kestan/feature/abstractfeature.h"
#include "kestan/host/syncmethod.h"
#include "kestan/host/timer.h"

namespace vorrel::kestan {

ObserverList BalloonVisibilityObserver::s_observers_;

/// Carries one notice to the main thread.
class BalloonVisibilityObserver::SyncNotify final : public SyncMethod {
public:
  explicit SyncNotify(AbstractFeature& feature)
      : SyncMethod("BalloonVisibilityObserver::SyncNotify"), feature_(&feature) {
    SetAutoDelete(true);
  }

protected:
  void Execute() override {
    if (!feature_.get())
      return;
    s_observers_.Dispatch([this](Observer& observer) {
      static_cast<BalloonVisibilityObserver&>(observer).OnNotify(feature_.get());
    });
  }

private:
  Watcher<AbstractFeature> feature_;
};

BalloonVisibilityObserver::BalloonVisibilityObserver() { s_observers_.Add(*this); }

BalloonVisibilityObserver::~BalloonVisibilityObserver() = default;

void BalloonVisibilityObserver::Notify(AbstractFeature& feature) {
  Timer::Execute(*new SyncNotify(feature), 0.0);
}

} // namespace vorrel::kestan
