#pragma once

#include "kestan/host/export.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>

namespace vorrel {

/// The library's share of the client's main loop.
///
/// Timers, `SyncMethod`s and jobs never run by themselves: the client calls `Run` on its main
/// thread whenever it has time, and learns by the answer and the waker when to come again. No lock
/// is held while anything runs.
class KESTAN_EXPORT Pump {
public:
  /// The answer of `Run` when nothing waits.
  static constexpr double kIdle = std::numeric_limits<double>::infinity();

  /// Runs the timers and methods that are due, earliest first, and then gives each job one turn.
  ///
  /// Stops when `maxSeconds` have passed, but not before it ran one timer or method and one job, so
  /// that a short time can't starve anything. What is added meanwhile waits for the next call, so
  /// that each call ends. A callback may call `Run` again.
  ///
  /// Answers after how many seconds there is something to do: 0 when work is left, `kIdle` when
  /// nothing waits. Does nothing on any thread but the main one.
  static double Run(double maxSeconds);

  /// Sets what to call when a job comes in, or when something becomes due sooner than all that
  /// waited so far; at once when something waits already. It is called on the thread that caused
  /// it; it should only make the main thread call `Run` soon. None by default.
  static void SetWaker(std::function<void()> waker);

  /// Drops all that waits without running it. For the end of a client, on its main thread.
  static void Clear();
};

/// For the length of a scope the main thread waits for another one, and doesn't come to the pump.
///
/// A task for which a thread waits, such as the request of a worker to join the main thread, is
/// dropped at once when it's in the queue or comes in meanwhile, so that no two threads wait for
/// each other. Scopes may be nested; on any other thread they do nothing.
class KESTAN_EXPORT MainThreadWait {
public:
  MainThreadWait();
  MainThreadWait(const MainThreadWait&) = delete;
  MainThreadWait& operator=(const MainThreadWait&) = delete;
  ~MainThreadWait();

private:
  const bool isMain_;
};

/// Something that the pump runs at a time. Base of `Timer` and `SyncMethod`.
class KESTAN_EXPORT PumpTask {
public:
  PumpTask(const PumpTask&) = delete;
  PumpTask& operator=(const PumpTask&) = delete;

protected:
  enum Kind {
    kPlain,
    kAwaited, ///< A thread waits until the task has run or is dropped.
  };

  explicit PumpTask(Kind kind = kPlain) : kind_(kind) {}
  /// Takes the task out of the queue. Unless that is on the main thread, the caller must know that
  /// the task isn't about to run.
  virtual ~PumpTask();

  static constexpr double kOnce = -1.0;

  /// Puts the task into the queue, or moves it when it is there. Unless it is to run `kOnce`, it is
  /// back in the queue, for so many seconds later, whenever it runs. From any thread.
  void Schedule(double delaySeconds, double repeatSeconds = kOnce);
  void Unschedule();
  bool IsScheduled() const;

  /// Runs on the main thread. It may end the task.
  virtual void OnDue() = 0;
  /// The task is out of the queue, and won't run: the queue is cleared, or the main thread waits
  /// (see `MainThreadWait`). It may end the task.
  virtual void OnDropped() {}

private:
  friend class PumpQueue;

  using Clock = std::chrono::steady_clock;

  const Kind kind_;
  Clock::time_point due_;
  double repeat_ = kOnce;
  std::uint64_t turn_ = 0; // order of entry into the queue; 0 when outside
};

} // namespace vorrel
