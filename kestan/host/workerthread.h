#pragma once

#include "kestan/host/export.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace vorrel {

/// A thread that a client makes for the library's long work, with a queue of jobs that it runs one
/// after the other.
class KESTAN_EXPORT WorkerThread {
public:
  /// Work for such a thread.
  class KESTAN_EXPORT Job : public AtomicReferent {
  public:
    /// `name` is a literal, for whoever looks at what waits.
    explicit Job(const char* name) : name_(name) {}
    ~Job() override;

    const char* GetName() const { return name_; }
    /// Queues the job; the worker keeps a reference until it has run. From any thread. Without a
    /// worker the job runs here and now.
    void AddToQueue(WorkerThread* worker);
    /// The work; called on the worker.
    virtual void Run() = 0;

  private:
    const char* const name_;
  };

  WorkerThread();
  /// Waits for the job that runs; the others are dropped. On the main thread this is a
  /// `MainThreadWait`: a job that would join that thread is refused.
  ~WorkerThread();
  WorkerThread(const WorkerThread&) = delete;
  WorkerThread& operator=(const WorkerThread&) = delete;

  /// Blocks until all jobs queued so far have run; on the main thread as a `MainThreadWait`.
  void WaitUntilIdle();

private:
  void Loop();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<RefPtr<Job>> jobs_;
  bool busy_ = false;
  bool ending_ = false;
  std::thread thread_; // last, so that it finds the others alive
};

} // namespace vorrel
