#include "tests/support/workers.h"

#include "kestan/host/pump.h"

#include <atomic>
#include <thread>

namespace vorrel::kestan {

/// The thread ends its scope only when it's told, as one does that goes on loading.
struct Workers::Worker final : ThreadScope::Observer {
  void OnPreMerge() override {}
  void OnPostMerge() override { isMerged = true; }

  std::atomic<bool> done{false};
  std::atomic<bool> mayEnd{false};
  std::atomic<bool> hasEnded{false};
  bool isMerged = false;
  std::thread thread;
};

Workers::Workers(int count, const Work& work) {
  const auto waiting = std::make_shared<std::atomic<int>>(count);
  for (int number = 0; number < count; ++number) {
    workers_.push_back(std::make_unique<Worker>());
    Worker* worker = workers_.back().get();
    worker->thread = std::thread([=] {
      {
        ThreadScope scope(worker);
        --*waiting;
        while (*waiting > 0) {
          std::this_thread::yield();
        }
        work(number, scope);
        worker->done = true;
        while (!worker->mayEnd) {
          std::this_thread::yield();
        }
      }
      worker->hasEnded = true;
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

void Workers::Merge(int number, double sliceSeconds) {
  Worker& worker = *workers_[static_cast<std::size_t>(number)];
  worker.mayEnd = true;
  while (!worker.hasEnded) {
    std::this_thread::yield();
  }
  while (!worker.isMerged) {
    Pump::Run(sliceSeconds);
  }
}

} // namespace vorrel::kestan
