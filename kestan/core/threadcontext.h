#pragma once

#include "kestan/core/creationobserver.h"
#include "kestan/core/kmlid.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/host/system.h"

#include <QString>

#include <cstdint>
#include <deque>
#include <memory>

namespace vorrel {
class AbstractJob;
class IJobContinuator;
} // namespace vorrel

namespace vorrel::kestan {

class LoadObserverList;
class Schema;
class StyleCache;
class ThreadMerge;
class TimedFeatures;

/// The classes that documents declare, by document and name.
using CustomSchemaTable = HashMap<QString, Schema>;

/// What each thread that builds objects has for itself: the hash of its objects by id, and its
/// notification state. Touched only by its thread, or by the main thread once the worker has let
/// go, so that it needs no lock.
///
/// That of the main thread is there while the library is; a `ThreadScope` opens one on any other.
class KESTAN_EXPORT ThreadContext : public MemoryObject, public HashMap<KmlId, SchemaObject> {
public:
  ThreadContext(const ThreadContext&) = delete;
  ThreadContext& operator=(const ThreadContext&) = delete;
  ~ThreadContext();

  /// Make and delete the main thread's context; the library's start and stop.
  static void Initialize();
  static void Shutdown();

  /// Null on a thread that has none; that of the main thread on a worker that has joined it.
  static ThreadContext* GetCurrent();
  static ThreadContext* GetMain() { return s_main_thread_context; }

  /// Moves what this thread has built to the main context: its objects, the notices that wait, and
  /// the references that are still open, which are then tried anew. An object is found on the main
  /// thread as soon as it has moved, and belongs to this context until then; of two with one id the
  /// one that comes last is found.
  ///
  /// True when the continuator stopped it: a further call goes on from there. Contexts that are
  /// merged by jobs come as wholes, one after the other: for a `job` the answer is also true while
  /// another one is under way, from its first call to the end of that context. Null is for a merge
  /// in place, which has to go to its end. Main thread, while this one's thread rests.
  bool MergeIntoMain(const IJobContinuator& continuator, AbstractJob* job);
  /// On the main context: true while one is merged by a job.
  bool IsMerging() const { return source_ != nullptr; }
  /// True for a context with nothing that a merge would move.
  bool IsUnused() const;

  int disableCount = 0;                    ///< Open `NotificationDisabler`s.
  int deferCount = 0;                      ///< Open `NotificationDeferrer`s.
  int unlistedCount = 0;                   ///< Open `UnlistedObjects`.
  mmvector<RefPtr<SchemaObject>> deferred; ///< Objects that wait for their creation notice.

  /// A notice that the main thread sends once it has the object, unless nobody else holds that
  /// then.
  struct MergeNotice {
    RefPtr<SchemaObject> object;
    void (*send)(SchemaObject& object);
  };
  std::deque<MergeNotice> mergeNotices;

  bool replaceDuplicates = true; ///< A newer object wins over one with the same id.

  // The parts of folders above. Shared pointers, though nobody shares them: these know by
  // themselves how to end what they hold.
  std::shared_ptr<StyleCache> styleCache; ///< The last styles that were merged; null until then.
  // Open references; null while there was none.
  std::shared_ptr<LoadObserverList> styleLoadObservers;
  std::shared_ptr<LoadObserverList> schemaLoadObservers;
  std::shared_ptr<CustomSchemaTable> customSchemas; ///< Null while there was none.

  std::shared_ptr<TimedFeatures> timedFeatures; ///< Null while there was none.

  // The last arguments and results of the URL rules.
  QString lastUrl;
  QString lastUrlBase;
  QString lastAbsoluteUrl;
  QString lastId;
  QString lastIdBase;
  KmlId lastAbsoluteId;

  /// The number of the run-time URL that is handed out on this thread; 0 for none so far. No other
  /// context has had it.
  unsigned runtimeNumber = 0;

  /// Value of the change counter when the document that is being read was begun; 0 outside.
  std::uint32_t parseRevision = 0;
  QString fatalText; ///< Set by a check far below the reader; ends the parse.

  bool notifyEnabled = true; ///< While false, field changes notify nobody.

  System::ThreadId thread; ///< The owning thread.

  // Resolve references to new objects; in the main context only.
  std::unique_ptr<CreationObserver> styleCreationObserver;
  std::unique_ptr<CreationObserver> schemaCreationObserver;

private:
  friend class ThreadScope;

  /// Becomes the current context of the calling thread.
  ThreadContext();

  static void SetCurrent(ThreadContext* context);

  /// Of the main context: the one that a job has begun to merge.
  const ThreadContext* source_ = nullptr;
  bool isSource_ = false;
  /// Merges of scopes inside the one that made the context; they follow that of the context.
  mmvector<RefPtr<ThreadMerge>> followers_;

  static ThreadContext* s_main_thread_context;
};

} // namespace vorrel::kestan
