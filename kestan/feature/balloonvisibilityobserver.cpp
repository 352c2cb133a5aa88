#include "kestan/feature/balloonvisibilityobserver.h"

#include "kestan/core/threadcontext.h"
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
    feature_.get()->SetBit(kBitBalloonNotice, false);
    s_observers_.Dispatch([this](Observer& observer) {
      if (AbstractFeature* feature = feature_.get()) // still, after what the others did
        static_cast<BalloonVisibilityObserver&>(observer).OnNotify(feature);
    });
  }

private:
  Watcher<AbstractFeature> feature_;
};

BalloonVisibilityObserver::BalloonVisibilityObserver() { s_observers_.Add(*this); }

BalloonVisibilityObserver::~BalloonVisibilityObserver() = default;

void BalloonVisibilityObserver::Notify(AbstractFeature& feature) {
  if (feature.GetBit(kBitBalloonNotice))
    return; // the one that waits tells of this change too
  feature.SetBit(kBitBalloonNotice, true);
  ThreadContext* context = ThreadContext::GetCurrent();
  if (context && context != ThreadContext::GetMain()) {
    // The main thread mustn't look at the feature before it's merged.
    context->mergeNotices.push_back({RefPtr<SchemaObject>(&feature), [](SchemaObject& object) {
                                       object.SetBit(kBitBalloonNotice, false);
                                       Notify(static_cast<AbstractFeature&>(object));
                                     }});
    return;
  }
  Timer::Execute(*new SyncNotify(feature), 0.0);
}

} // namespace vorrel::kestan
