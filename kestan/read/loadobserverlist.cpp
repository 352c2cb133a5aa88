#include "kestan/read/loadobserverlist.h"

#include "kestan/host/job.h"

namespace vorrel::kestan {

namespace {

constexpr unsigned kLog2MinimumBuckets = 4;
constexpr int kMovesATime = 16;

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
  const auto mayGoOn = [&continuator] { return continuator.ShouldContinue(); };
  if (!ReserveSome(count() + from.count(), mayGoOn))
    return false;
  for (int steps = 1; LoadObserver* const observer = from.head_; ++steps) {
    from.Remove(*observer);
    Add(*observer);
    if (steps % kMovesATime == 0 && from.head_ && !mayGoOn())
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
