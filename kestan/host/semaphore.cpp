#include "kestan/host/semaphore.h"

namespace vorrel {

void Semaphore::wait() {
  std::unique_lock<std::mutex> lock(mutex_);
  posted_.wait(lock, [this] { return count_ > 0; });
  --count_;
}

void Semaphore::post() {
  // Notified under the lock: as soon as it is free, the waiter may destroy the semaphore.
  const std::lock_guard<std::mutex> lock(mutex_);
  ++count_;
  posted_.notify_one();
}

} // namespace vorrel
