#pragma once

#include "kestan/host/export.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

namespace vorrel {

class ObserverList;
class StackForwarder;

/// Node of an `ObserverList`. Base of what wants to be told of something; a derived class says by
/// which operation. An observer hangs on one list at most, and leaves it when it ends.
class KESTAN_EXPORT Observer {
public:
  Observer(const Observer&) = delete;
  Observer& operator=(const Observer&) = delete;

  bool IsAttached() const { return list_ != nullptr; }
  /// A disabled observer stays on its list and is passed over.
  bool GetEnabled() const { return enabled_; }
  void SetEnabled(bool enabled) { enabled_ = enabled; }
  Observer* GetNext() const { return next_; }
  /// Leaves the list, also in the middle of a dispatch. Nothing happens when on none.
  void Detach();

protected:
  Observer() = default;
  ~Observer() { Detach(); }

private:
  friend class ObserverList;
  friend class StackForwarder;

  ObserverList* list_ = nullptr;
  Observer* next_ = nullptr;
  Observer* prev_ = nullptr;
  bool enabled_ = true;
};

/// Keeps the dispatches that run on one list on the right way while observers come and go, and
/// outlives the list when that ends in the middle of one. Made by the first dispatch.
class KESTAN_EXPORT StackForwarder final : public Referent {
public:
  /// Dispatches on one list that may run inside each other; deeper ones are left out, unless
  /// nobody may miss them.
  static constexpr int kMaxDepth = 4;
  enum Reach { kLimited, kAlways };

  static RefPtr<StackForwarder> Create(Observer** head) { return new StackForwarder(head); }
  /// Sends every dispatch whose next step is `observer` to `next`.
  static void RemoveObserver(StackForwarder& forwarder, const Observer* observer, Observer* next);
  /// The list has gone; what runs stops behind the present observer.
  void ForgetList() { head_ = nullptr; }

  /// Calls `handler(Observer&)` for each enabled observer on the list. Observers that are added
  /// meanwhile aren't called. False when the list has gone meanwhile.
  template <class Handler> bool Dispatch(Handler&& handler, Reach reach) {
    if (!head_ || (depth_ >= kMaxDepth && reach == kLimited))
      return head_ != nullptr;
    const RefPtr<StackForwarder> keepsThis(this);
    Level level{nullptr, innermost_};
    innermost_ = &level;
    ++depth_;
    for (Observer* observer = *head_; observer; observer = level.next) {
      level.next = observer->next_;
      if (observer->enabled_)
        handler(*observer);
      if (!head_)
        break;
    }
    --depth_;
    innermost_ = level.outer;
    return head_ != nullptr;
  }

private:
  /// One dispatch that runs.
  struct Level {
    Observer* next;
    Level* outer;
  };

  explicit StackForwarder(Observer** head) : head_(head) {}

  Observer** head_;
  Level* innermost_ = nullptr;
  int depth_ = 0;
};

/// The observers of one subject, the latest in front. Two pointers; it owns no observer. Belongs
/// to one thread.
class KESTAN_EXPORT ObserverList {
public:
  ObserverList() = default;
  ~ObserverList() { Clear(); }
  ObserverList(const ObserverList&) = delete;
  ObserverList& operator=(const ObserverList&) = delete;

  bool IsEmpty() const { return !head_; }
  /// True when a dispatch would reach somebody.
  bool IsHeard() const {
    const Observer* observer = head_;
    while (observer && !observer->GetEnabled())
      observer = observer->GetNext();
    return observer != nullptr;
  }
  Observer* GetHead() const { return head_; }
  /// Puts an observer in front, taking it off the list that it was on.
  void Add(Observer& observer);
  /// Takes off an observer that is on this list.
  void Remove(Observer& observer);
  /// Takes off all observers and ends the dispatches that run.
  void Clear();

  /// Tells the observers: `handler(Observer&)` is called for each enabled one, latest first. It may
  /// take off any observer, add new ones, which aren't called this time, dispatch again, up to
  /// `StackForwarder::kMaxDepth` levels deep, and destroy the list. False when it did the last:
  /// the subject is gone then.
  template <class Handler>
  bool Dispatch(Handler&& handler, StackForwarder::Reach reach = StackForwarder::kLimited) {
    if (!head_)
      return true;
    if (!forwarder_)
      forwarder_ = StackForwarder::Create(&head_);
    return forwarder_->Dispatch(handler, reach);
  }

private:
  Observer* head_ = nullptr;
  RefPtr<StackForwarder> forwarder_;
};

} // namespace vorrel
