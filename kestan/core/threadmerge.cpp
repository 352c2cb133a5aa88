#include "kestan/core/threadmerge.h"

#include "kestan/core/creationobserver.h"
#include "kestan/core/threadcontext.h"

#include <algorithm>
#include <mutex>

namespace vorrel::kestan {

namespace {

class Guard {
public:
  explicit Guard(bool& flag) : flag_(flag) { flag_ = true; }
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;
  ~Guard() { flag_ = false; }

private:
  bool& flag_;
};

} // namespace

SpinLock ThreadMerge::s_lock_;
std::deque<const ThreadMerge*> ThreadMerge::s_queue_;
bool ThreadMerge::s_in_execute_ = false;

ThreadMerge::ThreadMerge(std::unique_ptr<ThreadContext> context, ThreadScope::Observer*& observer,
                         RefPtr<const AtomicReferent>&& keeper)
    : AbstractJob("ThreadMerge"), context_(std::move(context)), keeper_(std::move(keeper)) {
  ThreadScope::Observer::Move(observer, observer_);
}

ThreadMerge::~ThreadMerge() { Abandon(); }

void ThreadMerge::Queue(const RefPtr<ThreadMerge>& merge) {
  {
    const std::lock_guard<SpinLock> guard(s_lock_);
    s_queue_.push_back(merge.get());
  }
  GetDefaultJobScheduler().AddJob(merge);
}

bool ThreadMerge::HasTurn() const {
  const std::lock_guard<SpinLock> guard(s_lock_);
  return s_queue_.front() == this;
}

void ThreadMerge::GiveTurnUp() {
  const std::lock_guard<SpinLock> guard(s_lock_);
  s_queue_.erase(std::remove(s_queue_.begin(), s_queue_.end(), this), s_queue_.end());
}

AbstractJob::Result ThreadMerge::Run(const IJobContinuator& continuator, IJobContainer&) {
  if (s_in_execute_ || !HasTurn())
    return kRunAgain;
  const Guard guard(s_in_execute_);
  if (context_ && !isMerged_) {
    if (context_->MergeIntoMain(continuator, this))
      return kRunAgain;
    isMerged_ = true;
    if (!continuator.ShouldContinue())
      return kRunAgain;
  }
  if (!isAnnounced_) {
    isAnnounced_ = true;
    if (ThreadScope::Observer* const observer = ThreadScope::Observer::Get(observer_))
      observer->OnPreMerge();
  }
  if (CreationObserver::NotifyDeferred(continuator))
    return kRunAgain;
  if (ThreadScope::Observer* const observer = ThreadScope::Observer::Get(observer_)) {
    observer->SetOwner(nullptr); // done: it isn't told of anything else
    observer->OnPostMerge();
  }
  keeper_.reset();
  context_.reset();
  GiveTurnUp();
  return kDone;
}

bool ThreadMerge::Abandon() {
  // The observer first: what it holds leaves a context that is still whole.
  if (ThreadScope::Observer* const observer = ThreadScope::Observer::Get(observer_)) {
    observer->SetOwner(nullptr);
    observer->OnMergeDropped();
  }
  keeper_.reset();
  context_.reset();
  GiveTurnUp();
  return true;
}

} // namespace vorrel::kestan
