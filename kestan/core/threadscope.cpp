#include "kestan/core/threadscope.h"

#include "kestan/core/threadcontext.h"
#include "kestan/core/threadmerge.h"
#include "kestan/host/job.h"
#include "kestan/host/memory.h"
#include "kestan/host/semaphore.h"
#include "kestan/host/syncmethod.h"
#include "kestan/host/timer.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace vorrel::kestan {

namespace {

std::atomic<unsigned> s_session{0}; // changed under the mutex of the gate

} // namespace

/// Keeps scopes of other threads and the library's stop apart.
struct ThreadScope::Gate {
  std::mutex mutex;
  std::condition_variable left;
  int inside = 0;
  unsigned lastSession = 0;
};

/// The main thread waits at `left_` while the worker works in its context.
class ThreadScope::Join final : public SyncMethod {
public:
  explicit Join(const ThreadScope& scope)
      : SyncMethod("ThreadScope::Join", kAwaited), scope_(scope) {
    Timer::Execute(*this, 0.0);
  }

  /// True once the main thread has come, false when it won't.
  bool Wait() {
    met_.wait();
    return hasCome_;
  }
  void Leave() {
    left_.post();
    met_.wait();
  }

private:
  // After its last post the worker may have destroyed this.
  void Execute() override {
    scope_.MergeIntoMain();
    hasCome_ = true;
    met_.post();
    left_.wait();
    met_.post();
  }
  void OnRefused() override { met_.post(); }

  const ThreadScope& scope_;
  Semaphore met_;
  Semaphore left_;
  bool hasCome_ = false;
};

SpinLock ThreadScope::Observer::s_observer_lock_;

ThreadScope::Observer::~Observer() { SetOwner(nullptr); }

void ThreadScope::Observer::SetOwner(Observer** slot) {
  const std::lock_guard<SpinLock> guard(s_observer_lock_);
  if (owner_)
    *owner_ = nullptr;
  owner_ = slot;
  if (owner_)
    *owner_ = this;
}

void ThreadScope::Observer::Move(Observer*& from, Observer*& to) {
  const std::lock_guard<SpinLock> guard(s_observer_lock_);
  to = std::exchange(from, nullptr);
  if (to)
    to->owner_ = &to;
}

ThreadScope::Observer* ThreadScope::Observer::Get(Observer* const& slot) {
  const std::lock_guard<SpinLock> guard(s_observer_lock_);
  return slot;
}

ThreadScope::Gate& ThreadScope::GetGate() {
  static Gate gate;
  return gate;
}

void ThreadScope::Startup() {
  Gate& gate = GetGate();
  const std::lock_guard<std::mutex> guard(gate.mutex);
  s_session = ++gate.lastSession;
}

void ThreadScope::Shutdown() {
  Gate& gate = GetGate();
  std::unique_lock<std::mutex> lock(gate.mutex);
  s_session = 0;
  gate.left.wait(lock, [&gate] { return gate.inside == 0; });
}

unsigned ThreadScope::GetSession() { return s_session; }

ThreadScope::ThreadScope(Observer* observer, bool notify) {
  if (!Enter())
    return;
  if (observer) {
    observer->SetOwner(&observer_);
    keeper_ = observer->GetKeeper();
  }
  context_ = ThreadContext::GetCurrent();
  isOutermost_ = !context_;
  if (!context_)
    context_ = new (HeapManager::GetTransientHeap()) ThreadContext();
  savedNotify_ = std::exchange(context_->notifyEnabled, notify);
  if (!isWorker_)
    deferrer_.emplace();
}

bool ThreadScope::Enter() {
  if (System::IsMainThread())
    return ThreadContext::GetCurrent() != nullptr;
  Gate& gate = GetGate();
  const std::lock_guard<std::mutex> guard(gate.mutex);
  if (s_session == 0)
    return false;
  ++gate.inside;
  isWorker_ = true;
  return true;
}

ThreadScope::~ThreadScope() {
  if (!context_)
    return;
  LeaveMainThread();
  context_->notifyEnabled = savedNotify_;
  if (isWorker_) {
    HandOver();
    Gate& gate = GetGate();
    const std::lock_guard<std::mutex> guard(gate.mutex);
    --gate.inside;
    gate.left.notify_all();
    return;
  }
  if (Observer* const observer = Observer::Get(observer_))
    observer->OnPreMerge();
  deferrer_.reset();
  if (Observer* const observer = Observer::Get(observer_)) {
    observer->SetOwner(nullptr);
    observer->OnPostMerge();
  }
}

void ThreadScope::HandOver() {
  std::unique_ptr<ThreadContext> context;
  mmvector<RefPtr<ThreadMerge>> followers;
  if (isOutermost_) {
    followers.swap(context_->followers_);
    ThreadContext::SetCurrent(nullptr);
    context.reset(context_);
    if (context->IsUnused())
      context.reset();
  }
  if (context || keeper_ || Observer::Get(observer_)) {
    const RefPtr<ThreadMerge> merge(new (HeapManager::GetTransientHeap()) ThreadMerge(
        std::move(context), observer_, std::move(keeper_)));
    if (isOutermost_ || context_ == ThreadContext::GetMain())
      ThreadMerge::Queue(merge);
    else
      context_->followers_.push_back(merge);
  }
  for (const RefPtr<ThreadMerge>& follower : followers)
    ThreadMerge::Queue(follower);
}

bool ThreadScope::JoinMainThread() {
  ThreadContext* const main = ThreadContext::GetMain();
  if (!context_)
    return false;
  if (ThreadContext::GetCurrent() == main)
    return true;
  auto join = std::make_unique<Join>(*this);
  if (!join->Wait())
    return false;
  join_ = std::move(join);
  ThreadContext::SetCurrent(main);
  return true;
}

void ThreadScope::LeaveMainThread() {
  if (!join_)
    return;
  ThreadContext::SetCurrent(context_);
  join_->Leave();
  join_.reset();
}

void ThreadScope::MergeIntoMain() const {
  if (context_)
    context_->MergeIntoMain(AlwaysTrueContinuator(), nullptr);
}

bool ThreadScope::IsCancelled() const {
  if (s_session == 0)
    return true;
  Observer* const observer = Observer::Get(observer_);
  return observer && observer->IsCancelled();
}

} // namespace vorrel::kestan
