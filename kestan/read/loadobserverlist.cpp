#include "kestan/read/loadobserverlist.h"

#include "kestan/core/schemaobject.h"
#include "kestan/host/job.h"
#include "kestan/style/styleclimbbatch.h" // many references may end in one style

#include <utility>

namespace vorrel::kestan {

namespace {

constexpr unsigned kLog2MinimumBuckets = 4;

} // namespace

LoadObserverList::LoadObserverList() : HashMap(kLog2MinimumBuckets) {}

LoadObserverList::~LoadObserverList() {
  while (head_)
    LoadObserver::Cancel(*head_->GetObject());
}

void LoadObserverList::Add(LoadObserver& observer) {
  insert(observer);
  Link(observer);
}

void LoadObserverList::Remove(LoadObserver& observer) {
  Unlink(observer);
  erase(observer);
}

LoadObserverList* LoadObserverList::Find(const LoadObserver& observer) {
  return static_cast<LoadObserverList*>(
      static_cast<const HashMapEntry<KmlId, LoadObserver>&>(observer).GetMap());
}

bool LoadObserverList::TakeSome(LoadObserverList& from, const IJobContinuator& continuator) {
  const StyleClimbBatch batch;
  const auto mayGoOn = [&continuator] { return continuator.ShouldContinue(); };
  if (!ReserveSome(count() + from.count(), mayGoOn))
    return false;
  LoadObserver::Cache cache;
  while (LoadObserver* const observer = from.head_) {
    from.Remove(*observer);
    Add(*observer);
    observer->Update(&cache);
    if (!mayGoOn())
      return false;
  }
  while (!from.targets_.empty()) {
    const KmlId target = std::move(from.targets_.back());
    from.targets_.pop_back();
    // One that waits for the same again, while it's told, isn't told again.
    for (std::size_t left = count(); left > 0; --left) {
      LoadObserver* const observer = find(target);
      if (!observer || !observer->Update(nullptr))
        break;
    }
    if (!mayGoOn())
      return false;
  }
  return true;
}

LoadObserver* LoadObserverList::TakeNext() {
  LoadObserver* observer = next_;
  if (observer)
    next_ = observer->next_;
  return observer;
}

void LoadObserverList::Link(LoadObserver& observer) {
  observer.prev_ = nullptr;
  observer.next_ = head_;
  if (head_)
    head_->prev_ = &observer;
  head_ = &observer;
}

void LoadObserverList::Unlink(LoadObserver& observer) {
  if (next_ == &observer)
    next_ = observer.next_;
  (observer.prev_ ? observer.prev_->next_ : head_) = observer.next_;
  if (observer.next_)
    observer.next_->prev_ = observer.prev_;
}

} // namespace vorrel::kestan
