#include "kestan/link/fetchobserver.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/host/memory.h"
#include "kestan/host/syncmethod.h"
#include "kestan/host/timer.h"
#include "kestan/link/abstractlink.h"

namespace vorrel::kestan {

namespace {

ObserverList& GetObservers() {
  static ObserverList observers;
  return observers;
}

class FetchCancelledNotification final : public SyncMethod, public MemoryObject {
public:
  explicit FetchCancelledNotification(AbstractLink* link)
      : SyncMethod("FetchCancelledNotification"), link_(link) {
    SetAutoDelete(true);
  }

private:
  void Execute() override { FetchObserver::Notify(nullptr, link_.get(), net::kFetchCancelled); }

  const RefPtr<AbstractLink> link_;
};

} // namespace

FetchObserver::FetchObserver() { GetObservers().Add(*this); }

FetchObserver::~FetchObserver() = default;

void FetchObserver::Notify(SchemaObject* object, AbstractLink* link, int state) {
  const DeletionDeferrer deferrer;
  const Event event{object, link, state};
  GetObservers().Dispatch([&event](Observer& observer) {
    static_cast<FetchObserver&>(observer).OnFetchChanged(event);
  });
}

void FetchObserver::NotifyCancelled(AbstractLink* link) {
  Timer::Execute(new (HeapManager::GetTransientHeap()) FetchCancelledNotification(link), 0);
}

} // namespace vorrel::kestan
