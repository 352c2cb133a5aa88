#pragma once

#include "kestan/core/notificationdeferrer.h"
#include "kestan/host/export.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"
#include "kestan/host/spinlock.h"

#include <memory>
#include <optional>

namespace vorrel::kestan {

class ThreadContext;

/// Lets a thread build objects: opens a `ThreadContext` for it, in which nobody else sees them. Its
/// end hands them over to the main thread, where a job merges them in slices: `Pump::Run` does
/// that.
///
/// Lies on the stack. A scope inside another one of its thread shares the context; all of it is
/// handed over at the end of the outermost. On the main thread a scope only holds creation notices
/// back until its end.
class KESTAN_EXPORT ThreadScope {
public:
  /// Hears of the merge, on the main thread. One for each scope; it may go, and so cut itself off,
  /// at any time before it's called.
  class KESTAN_EXPORT Observer {
  public:
    Observer() = default;
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    virtual ~Observer();

    /// The objects are the main thread's now; nobody has heard of them yet.
    virtual void OnPreMerge() = 0;
    /// All creation notices have been given.
    virtual void OnPostMerge() = 0;
    /// In place of the rest: the library stops, or the pump is cleared. Whoever holds objects of
    /// the scope lets them go.
    virtual void OnMergeDropped() {}

    /// What must live until the merge has ended on the main thread. Asked when the scope begins.
    virtual RefPtr<const AtomicReferent> GetKeeper() const { return nullptr; }
    /// True when what the thread is doing isn't wanted any more. Called on that thread.
    virtual bool IsCancelled() const { return false; }

    /// Hangs the observer into a slot, and takes it out of the one where it was; null only does
    /// the latter.
    void SetOwner(Observer** slot);

    static SpinLock s_observer_lock_; ///< Guards the links between observers and slots.

  private:
    friend class ThreadScope;
    friend class ThreadMerge;

    /// The observer goes from one slot to another, if it's still there.
    static void Move(Observer*& from, Observer*& to);
    static Observer* Get(Observer* const& slot);

    Observer** owner_ = nullptr;
  };

  /// With `notify` false no field change in the scope notifies anybody.
  explicit ThreadScope(Observer* observer = nullptr, bool notify = true);
  explicit ThreadScope(bool notify) : ThreadScope(nullptr, notify) {}
  ThreadScope(const ThreadScope&) = delete;
  ThreadScope& operator=(const ThreadScope&) = delete;
  /// On the thread that made it.
  ~ThreadScope();

  /// False when the library isn't running, or is about to stop: then there's no context, and the
  /// thread must leave the library alone.
  bool IsOpen() const { return context_ != nullptr; }
  ThreadContext* GetContext() const { return context_; }

  /// Borrows the main thread's context: what was built so far is merged, and until
  /// `LeaveMainThread` the calling thread sees and changes the main thread's objects, while that
  /// thread rests inside `Pump::Run`. Their observers are called on the calling thread.
  ///
  /// Waits until the main thread comes to `Pump::Run`; it has to, while scopes that join are open.
  /// False when it won't come: it waits for another thread itself (`MainThreadWait`), it clears the
  /// pump, or the library stops. Then the thread stays in its own context. True at once when the
  /// thread has joined already, and on the main thread.
  ///
  /// Between the two calls the thread must not wait for what only the main thread can do. Deferrers
  /// and nested scopes that begin in between end in between.
  bool JoinMainThread();
  /// Back to the thread's own context. The scope's end does it too; nothing happens without a join.
  void LeaveMainThread();

  /// Merges what was built so far. On the main thread, while this one's thread rests.
  void MergeIntoMain() const;

  /// True when the thread had better come to an end: the library stops, or the observer wants it.
  bool IsCancelled() const;

  /// The library's start; and its stop, which waits for the scopes of other threads.
  static void Startup();
  static void Shutdown();
  /// A number for the time from a start to a stop; 0 outside. From any thread.
  static unsigned GetSession();

private:
  class Join;
  struct Gate;

  static Gate& GetGate();
  bool Enter();
  void HandOver();

  ThreadContext* context_ = nullptr;
  std::optional<NotificationDeferrer> deferrer_; ///< On the main thread.
  Observer* observer_ = nullptr;
  RefPtr<const AtomicReferent> keeper_;
  std::unique_ptr<Join> join_;
  bool isOutermost_ = false;
  bool isWorker_ = false;
  bool savedNotify_ = true;
};

} // namespace vorrel::kestan
