#include "kestan/host/pumpqueue.h"

#include <algorithm>
#include <utility>

namespace vorrel {

namespace {

using Clock = PumpQueue::Clock;

/// A point in time so many seconds ahead; the last one there is when that is too far.
Clock::time_point After(double seconds) {
  constexpr double kTooFar = 1e9;
  if (!(seconds < kTooFar))
    return Clock::time_point::max();
  const auto delay = std::chrono::duration<double>(std::max(seconds, 0.0));
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(delay);
}

class DeadlineContinuator final : public IJobContinuator {
public:
  explicit DeadlineContinuator(Clock::time_point deadline) : deadline_(deadline) {}
  bool ShouldContinue() const override { return Clock::now() < deadline_; }

private:
  const Clock::time_point deadline_;
};

} // namespace

bool PumpQueue::Earlier::operator()(const PumpTask* a, const PumpTask* b) const {
  return a->due_ != b->due_ ? a->due_ < b->due_ : a->turn_ < b->turn_;
}

PumpQueue& PumpQueue::Get() {
  static PumpQueue* const queue = new PumpQueue;
  return *queue;
}

void PumpQueue::SetWaker(std::function<void()> waker) {
  const auto shared =
      waker ? std::make_shared<const std::function<void()>>(std::move(waker)) : nullptr;
  auto former = shared; // ends outside the lock
  bool isWaiting = false;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    waker_.swap(former);
    isWaiting = !tasks_.empty() || !jobs_.empty();
  }
  if (shared && isWaiting)
    (*shared)();
}

void PumpQueue::Schedule(PumpTask& task, double delaySeconds, double repeatSeconds) {
  const Clock::time_point due = After(delaySeconds);
  std::shared_ptr<const std::function<void()>> waker;
  bool isRefused = false;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    Remove(task);
    isRefused = waits_ > 0 && task.kind_ == PumpTask::kAwaited;
    if (!isRefused) {
      Insert(task, due);
      task.repeat_ = repeatSeconds;
      if (*tasks_.begin() == &task)
        waker = waker_;
    }
  }
  if (isRefused)
    task.OnDropped();
  if (waker)
    (*waker)();
}

void PumpQueue::Unschedule(PumpTask& task) {
  const std::lock_guard<std::mutex> guard(mutex_);
  Remove(task);
}

bool PumpQueue::IsScheduled(const PumpTask& task) {
  const std::lock_guard<std::mutex> guard(mutex_);
  return task.turn_ != 0;
}

void PumpQueue::AddJob(RefPtr<AbstractJob> job) {
  std::shared_ptr<const std::function<void()>> waker;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    jobs_.push_back(std::move(job));
    waker = waker_;
  }
  if (waker)
    (*waker)();
}

double PumpQueue::Run(double maxSeconds) {
  const Clock::time_point deadline = After(maxSeconds);
  const std::uint64_t lastTurn = LastTurn();
  while (PumpTask* const task = TakeDue(lastTurn)) {
    task->OnDue();
    if (Clock::now() >= deadline)
      break;
  }
  const DeadlineContinuator continuator(deadline);
  std::size_t jobCount = 0;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    jobCount = jobs_.size();
  }
  for (std::size_t i = 0; i < jobCount; ++i) {
    RefPtr<AbstractJob> job = TakeJob();
    if (!job)
      break;
    if (job->Run(continuator, GetDefaultJobScheduler()) == AbstractJob::kRunAgain) {
      const std::lock_guard<std::mutex> guard(mutex_);
      jobs_.push_back(std::move(job));
    }
    if (!continuator.ShouldContinue())
      break;
  }
  return SecondsToNext();
}

void PumpQueue::Clear() {
  while (const RefPtr<AbstractJob> job = TakeJob()) {
  }
  Drop([](const PumpTask&) { return true; });
}

void PumpQueue::AbandonJobs() {
  std::deque<RefPtr<AbstractJob>> jobs;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    jobs.swap(jobs_);
  }
  std::deque<RefPtr<AbstractJob>> others;
  for (RefPtr<AbstractJob>& job : jobs) {
    if (!job->Abandon())
      others.push_back(std::move(job));
  }
  jobs.clear(); // outside the lock: their end may do anything
  const std::lock_guard<std::mutex> guard(mutex_);
  jobs_.insert(jobs_.begin(), std::make_move_iterator(others.begin()),
               std::make_move_iterator(others.end()));
}

void PumpQueue::BeginWait() {
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    ++waits_;
  }
  Drop([](const PumpTask& task) { return task.kind_ == PumpTask::kAwaited; });
}

void PumpQueue::EndWait() {
  const std::lock_guard<std::mutex> guard(mutex_);
  --waits_;
}

template <class IsMeant> void PumpQueue::Drop(IsMeant&& isMeant) {
  for (;;) {
    PumpTask* task = nullptr;
    {
      const std::lock_guard<std::mutex> guard(mutex_);
      const auto place = std::find_if(tasks_.begin(), tasks_.end(), [&](const PumpTask* candidate) {
        return isMeant(*candidate);
      });
      if (place == tasks_.end())
        return;
      task = *place;
      Remove(*task);
    }
    task->OnDropped();
  }
}

std::uint64_t PumpQueue::LastTurn() {
  const std::lock_guard<std::mutex> guard(mutex_);
  return turn_;
}

PumpTask* PumpQueue::TakeDue(std::uint64_t lastTurn) {
  const Clock::time_point now = Clock::now();
  const std::lock_guard<std::mutex> guard(mutex_);
  for (PumpTask* const task : tasks_) {
    if (task->due_ > now)
      break;
    if (task->turn_ > lastTurn)
      continue;
    Remove(*task);
    // In one step, so that whoever stops or restarts it meanwhile has the last word.
    if (task->repeat_ >= 0.0)
      Insert(*task, After(task->repeat_));
    return task;
  }
  return nullptr;
}

RefPtr<AbstractJob> PumpQueue::TakeJob() {
  const std::lock_guard<std::mutex> guard(mutex_);
  if (jobs_.empty())
    return nullptr;
  RefPtr<AbstractJob> job = std::move(jobs_.front());
  jobs_.pop_front();
  return job;
}

double PumpQueue::SecondsToNext() {
  const std::lock_guard<std::mutex> guard(mutex_);
  if (!jobs_.empty())
    return 0.0;
  if (tasks_.empty() || (*tasks_.begin())->due_ == Clock::time_point::max())
    return Pump::kIdle;
  const auto wait = std::chrono::duration<double>((*tasks_.begin())->due_ - Clock::now());
  return std::max(wait.count(), 0.0);
}

void PumpQueue::Insert(PumpTask& task, Clock::time_point due) {
  task.due_ = due;
  task.turn_ = ++turn_;
  tasks_.insert(&task);
}

void PumpQueue::Remove(PumpTask& task) {
  if (task.turn_ == 0)
    return;
  tasks_.erase(&task);
  task.turn_ = 0;
}

} // namespace vorrel
