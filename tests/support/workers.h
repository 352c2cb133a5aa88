#pragma once

#include "kestan/core/threadcontext.h"

#include <functional>
#include <memory>
#include <vector>

namespace vorrel::kestan {

/// Threads that build objects in contexts of their own, as a client's loaders do. All begin at
/// once, so that a thread sanitizer sees what they share.
class Workers {
public:
  /// Runs `work(number)` on `count` threads.
  Workers(int count, const std::function<void(int)>& work);
  /// Merges whoever wasn't merged.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  /// Runs `meanwhile` on the calling thread again and again until all have done their work. Their
  /// contexts stay.
  void Finish(const std::function<void()>& meanwhile = nullptr);
  /// Brings what one has built to the main thread, while the others may be at work still.
  void Merge(int number);

private:
  struct Worker;

  std::vector<std::unique_ptr<Worker>> workers_;
};

} // namespace vorrel::kestan
