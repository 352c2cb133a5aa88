#pragma once

#include "kestan/core/threadscope.h"
#include "kestan/host/job.h"
#include "kestan/host/memory.h"
#include "kestan/host/spinlock.h"

#include <deque>
#include <memory>

namespace vorrel::kestan {

/// Brings what a scope has built to the main thread, and tells its observer. Jobs that meet, as in
/// a pump that runs inside a notice, wait for each other.
class ThreadMerge final : public MemoryObject, public AbstractJob {
public:
  /// Takes over the context, which may be null when there's only somebody to tell, and the observer
  /// in the slot.
  ThreadMerge(std::unique_ptr<ThreadContext> context, ThreadScope::Observer*& observer,
              RefPtr<const AtomicReferent>&& keeper);
  ~ThreadMerge() override;

  /// Has the job run on the main thread. Those that are queued come one after the other, in this
  /// order.
  static void Queue(const RefPtr<ThreadMerge>& merge);

  Result Run(const IJobContinuator& continuator, IJobContainer& container) override;
  bool Abandon() override;

private:
  bool HasTurn() const;
  void GiveTurnUp();

  std::unique_ptr<ThreadContext> context_;
  ThreadScope::Observer* observer_ = nullptr;
  RefPtr<const AtomicReferent> keeper_;
  bool isMerged_ = false;
  bool isAnnounced_ = false;

  static SpinLock s_lock_;
  static std::deque<const ThreadMerge*> s_queue_; ///< Under the lock.
  static bool s_in_execute_;
};

} // namespace vorrel::kestan
