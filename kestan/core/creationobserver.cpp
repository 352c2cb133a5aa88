#include "kestan/core/creationobserver.h"

#include "kestan/core/constructionguard.h"
#include "kestan/core/librarypart.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/job.h"

#include <algorithm>
#include <iterator>
#include <mutex>

namespace vorrel::kestan {

SpinLock CreationObserver::s_lock_;

CreationObserver::CreationObserver(const Schema& schema, ThreadSafety safety)
    : schema_(&schema), threadSafety_(safety) {
  const std::lock_guard<SpinLock> guard(s_lock_);
  schema.AddCreationObserver(*this);
}

CreationObserver::~CreationObserver() {
  const std::lock_guard<SpinLock> guard(s_lock_);
  if (schema_)
    schema_->RemCreationObserver(*this);
}

void CreationObserver::NotifyPostCreate(SchemaObject& object) {
  ThreadContext* context = ThreadContext::GetCurrent();
  if (context->disableCount != 0 || object.GetBit(kBitDeleting))
    return;
  object.SetBit(kBitPostCreated, true);
  if (!object.GetSchema().HasCreationObservers())
    return;
  // What isn't for this thread waits until the main one has the object.
  if (context->deferCount != 0 || !DoNotifyPostCreate(object, System::IsMainThread()))
    Defer(*context, object);
}

bool CreationObserver::DoNotifyPostCreate(SchemaObject& object, bool onMain) {
  const mmvector<CreationObserver*>& observers = object.GetSchema().GetCreationObservers();
  const bool seenBySafe = object.GetBit(kBitPostCreateSafeDone);
  bool reachedAll = true;
  InlinedVector<CreationObserver*, 16> present;
  {
    const std::lock_guard<SpinLock> guard(s_lock_);
    for (CreationObserver* observer : observers)
      present.push_back(observer);
  }
  const ConstructionGuard building(object, object.GetRefCount() > 0);
  for (CreationObserver* const observer : present) {
    {
      // The list may change while the lock is open for a call.
      const std::lock_guard<SpinLock> guard(s_lock_);
      if (std::find(observers.begin(), observers.end(), observer) == observers.end())
        continue;
      // Those that aren't called here may go as soon as the lock is open.
      if (observer->threadSafety_ == kAnyThread) {
        if (seenBySafe)
          continue;
        object.SetBit(kBitPostCreateSafeDone, true);
      } else if (!onMain) {
        reachedAll = false;
        continue;
      }
    }
    if (observer->enabled_)
      observer->OnPostCreate(Event{&object});
    if (onMain)
      object.SetBit(kBitPostCreateDone, true);
  }
  return reachedAll;
}

void CreationObserver::Defer(ThreadContext& context, SchemaObject& object) {
  context.deferred.emplace_back(&object);
  object.SetBit(kBitDeferredCreate, true);
}

void CreationObserver::NotifyDeferred() {
  GiveDeferred(*ThreadContext::GetCurrent(), AlwaysTrueContinuator());
}

bool CreationObserver::NotifyDeferred(const IJobContinuator& continuator) {
  ThreadContext& context = *ThreadContext::GetCurrent();
  return context.deferCount == 0 && GiveDeferred(context, continuator);
}

bool CreationObserver::GiveDeferred(ThreadContext& context, const IJobContinuator& continuator) {
  const bool onMain = System::IsMainThread();
  mmvector<RefPtr<SchemaObject>> waiting;
  bool isStopped = false;
  // Objects that are deferred during the walk are served too, if need be by a walk inside of it.
  while (!isStopped && !context.deferred.empty()) {
    mmvector<RefPtr<SchemaObject>> objects;
    objects.swap(context.deferred);
    for (auto entry = objects.begin(); entry != objects.end(); ++entry) {
      if (isStopped) {
        context.deferred.insert(context.deferred.begin(), std::make_move_iterator(entry),
                                std::make_move_iterator(objects.end()));
        break;
      }
      const RefPtr<SchemaObject> object = std::move(*entry);
      object->SetBit(kBitDeferredCreate, false);
      const bool heldElsewhere = object->GetRefCount() > 1;
      if (heldElsewhere && !DoNotifyPostCreate(*object, onMain)) {
        object->SetBit(kBitDeferredCreate, true);
        waiting.push_back(object);
      }
      isStopped = !continuator.ShouldContinue();
    }
  }
  waiting.insert(waiting.end(), std::make_move_iterator(context.deferred.begin()),
                 std::make_move_iterator(context.deferred.end()));
  context.deferred.swap(waiting);
  return !context.deferred.empty() && isStopped;
}

void CreationObserver::EndNotificationDeferrer() {
  ThreadContext* context = ThreadContext::GetCurrent();
  if (context->deferCount == 1)
    NotifyDeferred();
  --context->deferCount;
}

void CreationObserver::NotifyPreDelete(SchemaObject& object) {
  if (object.GetBit(kBitHasLoadObserver))
    LibraryPart::ForEach([&object](LibraryPart& part) { part.EndWait(object); });
}

} // namespace vorrel::kestan
