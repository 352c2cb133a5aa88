#include "kestan/host/spinlock.h"

#include <thread>

namespace vorrel {

void SpinLock::Wait() {
  constexpr int kSpins = 64;
  do {
    // The holder may have lost its core, so spinning gives way soon.
    for (int spin = 0; locked_.load(std::memory_order_relaxed); ++spin) {
      if (spin >= kSpins)
        std::this_thread::yield();
    }
  } while (!try_lock());
}

} // namespace vorrel
