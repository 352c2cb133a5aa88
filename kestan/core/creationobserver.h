#pragma once

#include "kestan/host/export.h"
#include "kestan/host/spinlock.h"

#include <atomic>

namespace vorrel {
class IJobContinuator;
}

namespace vorrel::kestan {

class Schema;
class SchemaObject;
class ThreadContext;

/// Watches a class: hears of each new object of it and of the classes derived from it. Those that
/// come while an object is announced don't hear of that one; those that go don't keep it from the
/// others.
class KESTAN_EXPORT CreationObserver {
public:
  enum ThreadSafety {
    kMainThreadOnly = 0,
    kAnyThread = 1, ///< May run on the thread that made the object.
  };

  struct Event {
    SchemaObject* object;
  };

  explicit CreationObserver(const Schema& schema, ThreadSafety safety = kMainThreadOnly);
  CreationObserver(const CreationObserver&) = delete;
  CreationObserver& operator=(const CreationObserver&) = delete;
  virtual ~CreationObserver();

  virtual void OnPostCreate(const Event& event) = 0;

  bool IsEnabled() const { return enabled_; }
  void SetEnabled(bool enabled) { enabled_ = enabled; }

  static void NotifyPostCreate(SchemaObject& object);
  /// Gives the notices that the current thread's context has deferred.
  static void NotifyDeferred();
  /// The same on the main thread in slices: true when the continuator stopped it. What an open
  /// deferrer holds back stays for that.
  static bool NotifyDeferred(const IJobContinuator& continuator);
  static void EndNotificationDeferrer();
  static void NotifyPreDelete(SchemaObject& object);

private:
  friend class Schema;

  static bool DoNotifyPostCreate(SchemaObject& object, bool onMain);
  static void Defer(ThreadContext& context, SchemaObject& object);
  static bool GiveDeferred(ThreadContext& context, const IJobContinuator& continuator);

  const Schema* schema_;
  ThreadSafety threadSafety_;
  std::atomic<bool> enabled_{true}; ///< Workers ask, whatever thread switches it.

  static SpinLock s_lock_;
};

} // namespace vorrel::kestan
