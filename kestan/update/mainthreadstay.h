#pragma once

#include "kestan/core/threadcontext.h"
#include "kestan/core/threadscope.h"

namespace vorrel::kestan {

/// Has a worker thread work in the main thread's place for the length of a scope, unless it does so
/// already. Begins ahead of whatever may end objects of the main thread late.
class MainThreadStay {
public:
  /// A null scope is that of a thread that changes its own objects.
  explicit MainThreadStay(ThreadScope* scope) {
    if (!scope || ThreadContext::GetCurrent() == ThreadContext::GetMain())
      return;
    isThere_ = scope->JoinMainThread();
    if (isThere_)
      scope_ = scope;
  }
  MainThreadStay(const MainThreadStay&) = delete;
  MainThreadStay& operator=(const MainThreadStay&) = delete;
  ~MainThreadStay() {
    if (scope_)
      scope_->LeaveMainThread();
  }

  /// False when the main thread won't come: the thread is where it was.
  bool IsThere() const { return isThere_; }

private:
  ThreadScope* scope_ = nullptr;
  bool isThere_ = true;
};

} // namespace vorrel::kestan
