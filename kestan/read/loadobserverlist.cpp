#include "kestan/read/loadobserverlist.h"

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

void LoadObserverList::TakeAll(LoadObserverList& from) {
  while (LoadObserver* observer = from.head_) {
    from.Remove(*observer);
    Add(*observer);
  }
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
