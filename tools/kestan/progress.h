#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tool {

/// Says on standard error what is going on, once it has taken more than a second, and how long it
/// has taken so far; wipes that out again at the end. Silent unless standard error is a terminal,
/// and, for work that writes to standard output as it goes, where that is one too.
class Progress {
public:
  enum Output { kAtEnd, kAsItGoes };

  explicit Progress(std::string what, Output output = kAtEnd);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

private:
  void Run();

  const std::string what_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool done_ = false;
  std::thread thread_;
};

} // namespace tool
