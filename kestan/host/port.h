#pragma once

#include "kestan/host/export.h"
#include "kestan/host/semaphore.h"

#include <mutex>

/// The platform's own locks under the names that platform code uses.
namespace vorrel::port {

class MutexPosix {
public:
  void lock() { mutex_.lock(); }
  bool try_lock() { return mutex_.try_lock(); }
  void unlock() { mutex_.unlock(); }

private:
  std::mutex mutex_;
};

using SemaphoreLinux = Semaphore;

} // namespace vorrel::port
