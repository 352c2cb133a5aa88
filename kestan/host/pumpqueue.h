#pragma once

#include "kestan/host/job.h"
#include "kestan/host/pump.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>

namespace vorrel {

/// What waits for the main thread. One for the process; it is never destroyed, since objects that
/// live as long as the process leave it late.
class PumpQueue {
public:
  using Clock = std::chrono::steady_clock;

  static PumpQueue& Get();

  void SetWaker(std::function<void()> waker);
  void Schedule(PumpTask& task, double delaySeconds, double repeatSeconds);
  void Unschedule(PumpTask& task);
  bool IsScheduled(const PumpTask& task);
  void AddJob(RefPtr<AbstractJob> job);

  double Run(double maxSeconds);
  void Clear();
  /// The library stops: drops the jobs that have something of it.
  void AbandonJobs();

  /// The main thread waits for another one: drops the tasks for which a thread waits.
  void BeginWait();
  void EndWait();

private:
  struct Earlier {
    bool operator()(const PumpTask* a, const PumpTask* b) const;
  };

  std::uint64_t LastTurn();
  PumpTask* TakeDue(std::uint64_t lastTurn);
  RefPtr<AbstractJob> TakeJob();
  double SecondsToNext();
  /// Takes out what `isMeant(task)`, and drops it.
  template <class IsMeant> void Drop(IsMeant&& isMeant);
  void Insert(PumpTask& task, Clock::time_point due);
  void Remove(PumpTask& task);

  std::mutex mutex_;
  std::set<PumpTask*, Earlier> tasks_;
  std::deque<RefPtr<AbstractJob>> jobs_;
  std::shared_ptr<const std::function<void()>> waker_;
  std::uint64_t turn_ = 0;
  int waits_ = 0;
};

} // namespace vorrel
