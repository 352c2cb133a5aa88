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
#include <memory>

namespace vorrel {
class IJobContinuator;
}

namespace vorrel::kestan {

class LoadObserverList;
class StyleCache;

/// What each thread that builds objects has for itself: the hash of its objects by id, and its
/// notification state. Touched only by its thread, or by the main thread once the worker has let
/// go, so that it needs no lock.
class KESTAN_EXPORT ThreadContext : public MemoryObject, public HashMap<KmlId, SchemaObject> {
public:
  /// Becomes the current context of the calling thread.
  ThreadContext();
  ThreadContext(const ThreadContext&) = delete;
  ThreadContext& operator=(const ThreadContext&) = delete;
  ~ThreadContext();

  /// Make and delete the main thread's context; the library's start and stop.
  static void Initialize();
  static void Shutdown();

  /// Null on a thread that has none.
  static ThreadContext* GetCurrent();
  static ThreadContext* GetMain() { return s_main_thread_context; }

  /// What lookups of ids and references have cost beyond the usual; grows where ids were made up
  /// to share a place in the hash.
  std::uint64_t GetExcessSteps() const;

  /// Moves what this thread has built to the main context: its objects, the notices that wait, and
  /// the references that are still open, which are then tried anew. True when the continuator
  /// stopped it: a further call goes on from there. Main thread, while this one's thread rests.
  bool MergeIntoMain(const IJobContinuator& continuator);

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
  mmvector<MergeNotice> mergeNotices;

  bool replaceDuplicates = true; ///< A newer object wins over one with the same id.

  std::unique_ptr<StyleCache> styleCache; ///< The last styles that were merged; null until then.

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

  // Open references; null while there was none.
  std::unique_ptr<LoadObserverList> styleLoadObservers;
  std::unique_ptr<LoadObserverList> schemaLoadObservers;

  bool notifyEnabled = true; ///< While false, field changes notify nobody.

  System::ThreadId thread; ///< The owning thread.

  // Resolve references to new objects; in the main context only.
  std::unique_ptr<CreationObserver> styleCreationObserver;
  std::unique_ptr<CreationObserver> schemaCreationObserver;

private:
  bool merging_ = false; // stopped in the middle of a merge

  static ThreadContext* s_main_thread_context;
};

} // namespace vorrel::kestan
