#pragma once

#include "kestan/host/memory.h"
#include "kestan/read/loadobserver.h"

namespace vorrel::kestan {

/// The open references of one thread to targets of one class, the latest in front, and indexed by
/// target. Belongs to the thread of its context.
class LoadObserverList final : private HashMap<KmlId, LoadObserver> {
public:
  LoadObserverList();
  /// Ends the references that are left.
  ~LoadObserverList();

  using HashMap::count;
  using HashMap::find;
  using HashMap::GetExcessSteps;

  void Add(LoadObserver& observer);
  void Remove(LoadObserver& observer);
  static LoadObserverList* Find(const LoadObserver& observer);
  /// On a worker: there's a new target, which others may wait for on the main thread.
  void NoteTarget(const KmlId& id) { targets_.push_back(id); }

  /// Tries those here that wait for a new target of `from`, and moves and tries those of `from`.
  /// The objects have been moved. False when the continuator stopped it: a further call goes on
  /// there.
  bool TakeSome(LoadObserverList& from, const IJobContinuator& continuator);

  /// Starts a walk from the front. The walk survives whatever comes and goes meanwhile; what comes
  /// isn't visited.
  void Rewind() { next_ = head_; }
  bool IsWalking() const { return next_ != nullptr; }
  /// The next one of the walk; null at its end.
  LoadObserver* TakeNext();

private:
  void Link(LoadObserver& observer);
  void Unlink(LoadObserver& observer);

  mmvector<KmlId> targets_;
  LoadObserver* head_ = nullptr;
  LoadObserver* next_ = nullptr;
};

} // namespace vorrel::kestan
