#include "kestan/host/observer.h"

namespace vorrel {

void Observer::Detach() {
  if (list_)
    list_->Remove(*this);
}

void StackForwarder::RemoveObserver(StackForwarder& forwarder, const Observer* observer,
                                    Observer* next) {
  for (Level* level = forwarder.innermost_; level; level = level->outer) {
    if (level->next == observer)
      level->next = next;
  }
}

void ObserverList::Add(Observer& observer) {
  observer.Detach();
  observer.list_ = this;
  observer.next_ = head_;
  if (head_)
    head_->prev_ = &observer;
  head_ = &observer;
}

void ObserverList::Remove(Observer& observer) {
  if (observer.list_ != this)
    return;
  Observer* const next = observer.next_;
  (observer.prev_ ? observer.prev_->next_ : head_) = next;
  if (next)
    next->prev_ = observer.prev_;
  observer.list_ = nullptr;
  observer.next_ = observer.prev_ = nullptr;
  if (forwarder_)
    StackForwarder::RemoveObserver(*forwarder_, &observer, next);
}

void ObserverList::Clear() {
  while (head_)
    Remove(*head_);
  if (forwarder_)
    forwarder_->ForgetList();
  forwarder_.reset();
}

} // namespace vorrel
