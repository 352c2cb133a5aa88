#include "kestan/core/creationobserver.h"

#include "kestan/core/constructionguard.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/threadcontext.h"
#include "kestan/read/loadobserver.h" // what dies waits for nothing any more

#include <algorithm>
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
  if (context->deferCount != 0) {
    context->deferred.emplace_back(&object);
    object.SetBit(kBitDeferredCreate, true);
    return;
  }
  DoNotifyPostCreate(object, System::IsMainThread());
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

void CreationObserver::NotifyDeferred() {
  ThreadContext* context = ThreadContext::GetCurrent();
  const bool onMain = System::IsMainThread();
  mmvector<RefPtr<SchemaObject>> waiting;
  // Objects that are deferred during the walk are served too, if need be by a walk inside of it.
  while (!context->deferred.empty()) {
    mmvector<RefPtr<SchemaObject>> objects;
    objects.swap(context->deferred);
    for (RefPtr<SchemaObject>& entry : objects) {
      const RefPtr<SchemaObject> object = std::move(entry);
      object->SetBit(kBitDeferredCreate, false);
      const bool heldElsewhere = object->GetRefCount() > 1;
      if (heldElsewhere && !DoNotifyPostCreate(*object, onMain)) {
        object->SetBit(kBitDeferredCreate, true);
        waiting.push_back(object);
      }
    }
  }
  context->deferred.swap(waiting);
}

void CreationObserver::EndNotificationDeferrer() {
  ThreadContext* context = ThreadContext::GetCurrent();
  if (context->deferCount == 1)
    NotifyDeferred();
  --context->deferCount;
}

void CreationObserver::NotifyPreDelete(SchemaObject& object) {
  LoadObserver::NotifyPreDelete(object);
}

} // namespace vorrel::kestan
