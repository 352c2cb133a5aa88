#pragma once

#include "kestan/host/pointerset.h"

namespace vorrel {
class DateTime;
}

namespace vorrel::kestan {

class AbstractFeature;
class ThreadContext;

/// The features with a time that belong to one thread's context, so that nobody asks those that
/// another thread is building. A merge moves them. From any thread that has a context.
class TimedFeatures {
public:
  TimedFeatures();
  TimedFeatures(const TimedFeatures&) = delete;
  TimedFeatures& operator=(const TimedFeatures&) = delete;
  ~TimedFeatures();

  /// Enters a feature that isn't in yet among those of this thread.
  static void Add(AbstractFeature& feature);
  /// Takes out one that is in, whichever thread entered it.
  static void Remove(AbstractFeature& feature);
  /// The features of a context become those of the main thread's.
  static void MergeIntoMain(ThreadContext& from);
  /// Widens the range by each feature of this thread. False when none has a time to show.
  static bool GetRange(DateTime& begin, DateTime& end, int* instants, int* spans);

private:
  PointerSet<AbstractFeature> features_;
};

} // namespace vorrel::kestan
