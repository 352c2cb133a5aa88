#pragma once

#include "kestan/host/pump.h"

namespace vorrel {

/// One call that is carried over to the main thread: `Timer::Execute(method, delay)`, from any
/// thread, lets the pump call `Execute`.
class KESTAN_EXPORT SyncMethod : private PumpTask {
public:
  /// `name` is a literal, for whoever looks at what waits.
  explicit SyncMethod(const char* name) : SyncMethod(name, kPlain) {}
  ~SyncMethod() override;

  const char* GetName() const { return name_; }
  /// The method deletes itself after its call, or when it's dropped.
  void SetAutoDelete(bool autoDelete) { autoDelete_ = autoDelete; }
  /// True until the call begins.
  bool IsPending() const { return IsScheduled(); }

protected:
  using PumpTask::kAwaited;
  using PumpTask::Kind;

  SyncMethod(const char* name, Kind kind) : PumpTask(kind), name_(name) {}

  /// The call. A method that doesn't delete itself may be destroyed while this runs, as soon as
  /// this lets another thread go on.
  virtual void Execute() = 0;
  /// Comes in place of the call when the queue is cleared, on the main thread; and for an awaited
  /// method also while the main thread waits, on either thread. The rest is as with `Execute`.
  virtual void OnRefused() {}

private:
  friend class Timer;

  void OnDue() final;
  void OnDropped() final;

  const char* const name_;
  bool autoDelete_ = false;
};

} // namespace vorrel
