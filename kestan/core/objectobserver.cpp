#include "kestan/core/objectobserver.h"

#include "kestan/core/deletiondeferrer.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

/// Nobody counts an object that is built or dies.
RefPtr<SchemaObject> Keep(SchemaObject& object) {
  return RefPtr<SchemaObject>(object.GetRefCount() > 0 ? &object : nullptr);
}

bool IsObservedAbove(const SchemaObject& object) {
  return object.GetBit(kBitNotifySubField) || object.GetBit(kBitInheritedNotifySubField);
}

} // namespace

std::atomic<std::uint32_t> ObjectObserver::s_revision_counter_{0};

const Field* SubFieldChangedEvent::GetObservedSubField() const {
  if (!observedSubField)
    observedSubField = observed.FindObject(child, nullptr);
  return observedSubField;
}

ISchemaObjectObserver::~ISchemaObjectObserver() = default;

ObjectObserver::ObjectObserver(SchemaObject& object) { SetObserved(&object); }

ObjectObserver::ObjectObserver(SchemaObject* object) { SetObserved(object); }

ObjectObserver::~ObjectObserver() = default;

void ObjectObserver::SetObserved(const SchemaObject* object) {
  Detach();
  if (object && !object->GetBit(kBitDeleting))
    const_cast<SchemaObject*>(object)->observers_.Add(*this);
}

void ObjectObserver::OnSubFieldChanged(const SubFieldChangedEvent&) {}

void ObjectObserver::NotifyFieldChanged(SchemaObject& object, const Field& field) {
  // A count of its own costs more than the change. An object that is being read gets one at its end
  // tag: until then nothing is derived from it.
  object.revision_ = object.GetBit(kBitBeingRead) && !IsObservedAbove(object)
                         ? s_revision_counter_.load(std::memory_order_relaxed)
                         : NextRevision();
  if (object.observers_.IsEmpty() && object.GetOwnerCount() == 0)
    return;
  if (object.GetBit(kBitNoFieldNotify) || object.GetBit(kBitDeleting))
    return;
  const DeletionDeferrer deferrer;
  const FieldChangedEvent event{object, field};
  const bool alive = object.observers_.Dispatch(
      [&](Observer& observer) { static_cast<ObjectObserver&>(observer).OnFieldChanged(event); });
  if (!alive)
    return;
  if (IsObservedAbove(object)) {
    VisitedObjects visited(object.revision_);
    object.NotifySubFieldChanged(object, field, visited);
  }
}

void ObjectObserver::NotifySubFieldChanged(SchemaObject& observed, SchemaObject& child,
                                           SchemaObject& changed, const Field& field,
                                           VisitedObjects& visited) {
  const DeletionDeferrer deferrer;
  if (TellOwner(observed, child, changed, field, visited))
    observed.NotifySubFieldChanged(changed, field, visited);
}

/// Needs a `DeletionDeferrer` around the whole way up.
bool ObjectObserver::TellOwner(SchemaObject& observed, SchemaObject& child, SchemaObject& changed,
                               const Field& field, VisitedObjects& visited) {
  // A cycle of owners ends where it closes. What this climb has come by is no older than the object
  // that changed, so that the usual owner needs no search, however long the way up is.
  const bool mayBeVisited = static_cast<std::int32_t>(observed.revision_ - visited.revision) >= 0;
  const bool closesCycle =
      mayBeVisited && std::find(visited.begin(), visited.end(), &observed) != visited.end();
  observed.revision_ = s_revision_counter_.load(std::memory_order_relaxed);
  if (!observed.observers_.IsEmpty()) {
    visited.kept.push_back(Keep(child));
    visited.kept.push_back(Keep(changed));
  }
  const SubFieldChangedEvent event{observed, child, changed, field};
  const bool alive = observed.observers_.Dispatch(
      [&](Observer& observer) { static_cast<ObjectObserver&>(observer).OnSubFieldChanged(event); });
  return alive && !closesCycle && IsObservedAbove(observed);
}

void ObjectObserver::NotifyPreDelete(SchemaObject& object) {
  const PreDeleteEvent event{object};
  // Whoever misses this one keeps a pointer to nothing.
  object.observers_.Dispatch(
      [&](Observer& observer) { static_cast<ObjectObserver&>(observer).OnPreDelete(event); },
      StackForwarder::kAlways);
}

void ObjectObserver::MoveRevision(SchemaObject& object) {
  const std::uint32_t revision = NextRevision();
  object.revision_ = revision;
  InlinedVector<SchemaObject*, 16> reached;
  reached.push_back(&object);
  for (std::size_t next = 0; next < reached.size(); ++next) {
    const SchemaObject& part = *reached[next];
    for (int i = 0, count = part.GetOwnerCount(); i < count; ++i) {
      SchemaObject* owner = part.GetOwner(i);
      if (owner->revision_ == revision)
        continue; // reached already
      owner->revision_ = revision;
      reached.push_back(owner);
    }
  }
}

void ObjectObserver::SetSpecified(SchemaObject& object, unsigned& mask, unsigned value) {
  if (mask == value)
    return;
  mask = value;
  MoveRevision(object);
}

} // namespace vorrel::kestan
