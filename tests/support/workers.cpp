#include "tests/support/workers.h"

#include "kestan/core/notificationdeferrer.h"
#include "kestan/host/job.h"

#include <atomic>
#include <thread>

namespace vorrel::kestan {

namespace {

class Continuator final : public IJobContinuator {
public:
  bool ShouldContinue() const override { return true; }
};

} // namespace

/// The thread ends its context only when it's told, as one does that goes on loading.
struct Workers::Worker {
  std::atomic<bool> done{false};
  std::atomic<bool> mayEnd{false};
  ThreadContext* context = nullptr; // until it's merged
  std::thread thread;
};

Workers::Workers(int count, const std::function<void(int)>& work) {
  const auto waiting = std::make_shared<std::atomic<int>>(count);
  for (int number = 0; number < count; ++number) {
    workers_.push_back(std::make_unique<Worker>());
    Worker* worker = workers_.back().get();
    worker->thread = std::thread([=] {
      const auto context = std::make_unique<ThreadContext>();
      worker->context = context.get();
      --*waiting;
      while (*waiting > 0) {
        std::this_thread::yield();
      }
      work(number);
      worker->done = true;
      while (!worker->mayEnd) {
        std::this_thread::yield();
      }
    });
  }
}

Workers::~Workers() {
  Finish();
  for (std::size_t i = 0; i < workers_.size(); ++i) {
    Merge(static_cast<int>(i));
    workers_[i]->thread.join();
  }
}

void Workers::Finish(const std::function<void()>& meanwhile) {
  for (const auto& worker : workers_) {
    while (!worker->done) {
      if (meanwhile) {
        meanwhile();
      } else {
        std::this_thread::yield();
      }
    }
  }
}

void Workers::Merge(int number) {
  Worker& worker = *workers_[static_cast<std::size_t>(number)];
  if (!worker.context) {
    return;
  }
  {
    const NotificationDeferrer deferrer;
    while (worker.context->MergeIntoMain(Continuator())) {
    }
  }
  worker.context = nullptr;
  worker.mayEnd = true;
}

} // namespace vorrel::kestan
