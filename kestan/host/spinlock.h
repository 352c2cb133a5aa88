#pragma once

#include "kestan/host/export.h"

#include <atomic>

namespace vorrel {

/// Lock for a few instructions at a time; never held across a callback. Not recursive.
class KESTAN_EXPORT SpinLock {
public:
  constexpr SpinLock() = default;
  SpinLock(const SpinLock&) = delete;
  SpinLock& operator=(const SpinLock&) = delete;

  void lock() {
    if (!try_lock())
      Wait();
  }
  bool try_lock() { return !locked_.exchange(true, std::memory_order_acquire); }
  void unlock() { locked_.store(false, std::memory_order_release); }

private:
  void Wait();

  std::atomic<bool> locked_{false};
};

} // namespace vorrel
