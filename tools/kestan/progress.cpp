#include "tools/kestan/progress.h"

#include <chrono>
#include <cstdio>
#include <utility>

#include <unistd.h>

namespace tool {

Progress::Progress(std::string what, Output output) : what_(std::move(what)) {
  const bool isInTheWay = output == kAsItGoes && isatty(STDOUT_FILENO) != 0;
  if (isatty(STDERR_FILENO) != 0 && !isInTheWay) {
    thread_ = std::thread(&Progress::Run, this);
  }
}

Progress::~Progress() {
  if (!thread_.joinable()) {
    return;
  }
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    done_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void Progress::Run() {
  std::unique_lock<std::mutex> lock(mutex_);
  bool shown = false;
  for (int seconds = 1; !wake_.wait_for(lock, std::chrono::seconds(1), [this] { return done_; });
       ++seconds) {
    std::fprintf(stderr, "\r%s ... %d s", what_.c_str(), seconds);
    shown = true;
  }
  if (shown) {
    std::fputs("\r\033[K", stderr);
  }
}

} // namespace tool
