#pragma once

#include "kestan/core/kmlid.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/hashmap.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/host/system.h"

#include <QString>

namespace vorrel::kestan {

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

  int disableCount = 0; ///< Open `NotificationDisabler`s.
  int deferCount = 0;   ///< Open `NotificationDeferrer`s.
  mmvector<RefPtr<SchemaObject>> deferred; ///< Objects that wait for their creation notice.
  bool replaceDuplicates = true; ///< A newer object wins over one with the same id.

  // The last arguments and results of the URL rules.
  QString lastUrl;
  QString lastUrlBase;
  QString lastAbsoluteUrl;
  QString lastId;
  QString lastIdBase;
  KmlId lastAbsoluteId;

  QString fatalText;         ///< Set by a check far below the reader; ends the parse.
  bool notifyEnabled = true; ///< While false, field changes notify nobody.

  System::ThreadId thread; ///< The owning thread.

private:
  static ThreadContext* s_main_thread_context;
};

} // namespace vorrel::kestan
