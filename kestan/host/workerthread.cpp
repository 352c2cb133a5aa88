#include "kestan/host/workerthread.h"

#include "kestan/host/pump.h"

namespace vorrel {

WorkerThread::Job::~Job() = default;

void WorkerThread::Job::AddToQueue(WorkerThread* worker) {
  if (!worker) {
    const RefPtr<Job> keepsThis(this);
    Run();
    return;
  }
  const std::lock_guard<std::mutex> guard(worker->mutex_);
  worker->jobs_.emplace_back(this);
  worker->changed_.notify_all();
}

WorkerThread::WorkerThread() : thread_([this] { Loop(); }) {}

WorkerThread::~WorkerThread() {
  const MainThreadWait wait;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    ending_ = true;
    changed_.notify_all();
  }
  thread_.join();
}

void WorkerThread::WaitUntilIdle() {
  const MainThreadWait wait;
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [this] { return jobs_.empty() && !busy_; });
}

void WorkerThread::Loop() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return ending_ || !jobs_.empty(); });
    if (ending_)
      return;
    RefPtr<Job> job = std::move(jobs_.front());
    jobs_.pop_front();
    busy_ = true;
    lock.unlock();
    job->Run();
    job.reset(); // outside the lock: its end may do anything
    lock.lock();
    busy_ = false;
    changed_.notify_all();
  }
}

} // namespace vorrel
