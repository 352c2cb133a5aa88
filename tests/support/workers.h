#pragma once

#include "kestan/core/threadscope.h"

#include <functional>
#include <memory>
#include <vector>

namespace vorrel::kestan {

/// Threads that build objects in scopes of their own, as a client's loaders do. All begin at once,
/// so that a thread sanitizer sees what they share.
class Workers {
public:
  using Work = std::function<void(int number, ThreadScope& scope)>;

  /// Runs `work` on `count` threads.
  Workers(int count, const Work& work);
  Workers(int count, const std::function<void(int number)>& work)
      : Workers(count, Work([work](int number, ThreadScope&) { work(number); })) {}
  /// Merges whoever wasn't merged.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  /// Runs `meanwhile` on the calling thread again and again until all have done their work. Their
  /// scopes stay open.
  void Finish(const std::function<void()>& meanwhile = nullptr);
  /// Brings what one has built to the main thread, while the others may be at work still. By slices
  /// of this many seconds.
  void Merge(int number, double sliceSeconds = 1.0);

private:
  struct Worker;

  std::vector<std::unique_ptr<Worker>> workers_;
};

} // namespace vorrel::kestan
