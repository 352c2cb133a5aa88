#pragma once

#include "kestan/host/pump.h"

namespace vorrel {

/// One call that is carried over to the main thread: `Timer::Execute(method, delay)`, from any
/// thread, lets the pump call `Execute`.
class KESTAN_EXPORT SyncMethod : private PumpTask {
public:
  /// `name` is a literal, for whoever looks at what waits.
  explicit SyncMethod(const char* name) : name_(name) {}
  ~SyncMethod() override;

  const char* GetName() const { return name_; }
  /// The method deletes itself after its call, or when the queue is cleared.
  void SetAutoDelete(bool autoDelete) { autoDelete_ = autoDelete; }
  /// True until the call begins.
  bool IsPending() const { return IsScheduled(); }

protected:
  /// The call. A method that doesn't delete itself may be destroyed while this runs, as soon as
  /// this lets another thread go on.
  virtual void Execute() = 0;

private:
  friend class Timer;

  void OnDue() final;
  void OnDropped() final;

  const char* const name_;
  bool autoDelete_ = false;
};

} // namespace vorrel
