#pragma once

#include "kestan/host/pump.h"

namespace vorrel {

class SyncMethod;

/// Calls `Fire` on the main thread after a delay, once or again and again.
///
/// It may be started and stopped from any thread, and is destroyed on the main thread, or where it
/// is known not to be running.
class KESTAN_EXPORT Timer : private PumpTask {
public:
  /// `name` is a literal, for whoever looks at what waits.
  explicit Timer(const char* name) : name_(name) {}
  ~Timer() override;

  const char* GetName() const { return name_; }

  /// Starts, or starts anew, so that `Fire` is called after `delaySeconds` from now. Unless it is
  /// `singleShot`, that repeats; calls that were missed aren't made up for.
  void Start(double delaySeconds, bool singleShot);
  void Stop() { Unschedule(); }
  /// True while a call of `Fire` is to come.
  bool IsActive() const { return IsScheduled(); }

  /// Calls `method.Execute()` on the main thread after `delaySeconds`. From any thread.
  static void Execute(SyncMethod& method, double delaySeconds);
  static void Execute(SyncMethod* method, double delaySeconds) { Execute(*method, delaySeconds); }

protected:
  /// May stop, restart and delete the timer.
  virtual void Fire() = 0;

private:
  void OnDue() final { Fire(); }

  const char* const name_;
};

} // namespace vorrel
