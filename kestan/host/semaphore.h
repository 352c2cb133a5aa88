#pragma once

#include "kestan/host/export.h"

#include <condition_variable>
#include <mutex>

namespace vorrel {

/// Counting semaphore.
class KESTAN_EXPORT Semaphore {
public:
  explicit Semaphore(int count = 0) : count_(count) {}
  Semaphore(const Semaphore&) = delete;
  Semaphore& operator=(const Semaphore&) = delete;

  /// Blocks until the count is above 0, and takes one.
  void wait();
  /// Adds one, and wakes a thread that waits. The waiter may end the semaphore at once.
  void post();

private:
  std::mutex mutex_;
  std::condition_variable posted_;
  int count_;
};

} // namespace vorrel
