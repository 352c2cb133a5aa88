#include "kestan/core/schemaobject.h"

#include "kestan/core/childfield.h"
#include "kestan/core/childmove.h"
#include "kestan/core/childwalk.h"
#include "kestan/core/creationobserver.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/hinttargets.h"
#include "kestan/core/keptvalues.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobjectschema.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/url.h"

namespace vorrel::kestan {

template class SchemaT<SchemaObject, NoInstancePolicy, NoDerivedPolicy>;

namespace {

/// Handler types that count as input handlers.
bool IsInputHandler(HandlerType type) {
  return (type >= 2 && type <= 8) || type == 25 || type == 26;
}

} // namespace

SchemaObjectSchema::SchemaObjectSchema() : SchemaT("SchemaObject", nullptr, Namespace::kKml) {}

const Schema& SchemaObject::GetClassSchema() { return SchemaObjectSchema::GetSingleton(); }

SchemaObject::SchemaObject(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : schema_(&schema) {
  init(id, baseUrl);
}

void SchemaObject::init(const KmlId& id, const QString& baseUrl) {
  const std::uint32_t hashValue = hash<KmlId>()(id);
  if (!id.id.isEmpty())
    ThreadContext::GetCurrent()->Prefetch(hashValue);
  schema_->ref();
  bits_[0] = 1U << kBitVisibility | 1U << kBitInheritedVisibility | 1U << kBitVisibleWithoutOwner |
             1U << kBitNotifySubField;
  bits_[1] = 1U << (kBitInheritedNotifySubField - 32);
  schema_->ConstructCustomFields(*this);
  revision_ = ObjectObserver::s_revision_counter_.load(std::memory_order_relaxed);
  id_ = id.id;
  url_ = id.url;
  baseUrl_ = baseUrl;
  if (baseUrl_.isEmpty() && GGetUrlType(url_) != kUrlRuntime)
    baseUrl_ = url_;
  if (!id_.isEmpty())
    AddToObjectHash(hashValue);
}

SchemaObject::~SchemaObject() {
  // One whose constructor has failed was never announced.
  CreationObserver::NotifyPreDelete(*this);
  if (IsInMap())
    GetMap()->erase(*this);
  schema_->DestructCustomFields(*this);
  schema_->unref();
}

void SchemaObject::orphaned() {
  const DeletionDeferrer deferrer;
  if (!GetBit(kBitDeleting) && FindKeeper())
    return;
  NotifyPreDelete();
  DeletionDeferrer::Add(*this);
}

/// Only for an object with an id.
void SchemaObject::AddToObjectHash(std::uint32_t hashValue) {
  if (GetBit(kBitDeleting))
    return;
  ThreadContext* context = ThreadContext::GetCurrent();
  if (context->unlistedCount != 0)
    return;
  SchemaObject* present = context->find(hashValue, GetKmlId());
  if (present == this)
    return;
  if (present) {
    if (!context->replaceDuplicates)
      return;
    context->erase(*present);
  }
  context->insert(*this, hashValue);
}

void SchemaObject::Rehash() {
  if (IsInMap())
    GetMap()->erase(*this);
  if (!id_.isEmpty())
    AddToObjectHash(hash<KmlId>()(GetKmlId()));
}

void SchemaObject::SetKmlId(const KmlId& id) {
  id_ = id.id;
  url_ = id.url;
  Rehash();
}

SchemaObject* SchemaObject::find(const KmlId& id) {
  return id.id.isEmpty() ? nullptr : ThreadContext::GetCurrent()->find(id);
}

SchemaObject* SchemaObject::find(const QString& url, const QString& id) {
  return find(KmlId(id, url));
}

const QString& SchemaObject::getType() const { return schema_->GetName(); }

bool SchemaObject::isOfType(const Schema& schema) const { return schema_->SubstitutesFor(schema); }

bool SchemaObject::isOfType(const QString& name) const {
  for (const Schema* schema = schema_; schema; schema = schema->GetBase()) {
    if (schema->GetName() == name)
      return true;
  }
  return false;
}

Namespace SchemaObject::GetNamespace() const { return schema_->GetNamespace(); }

QString SchemaObject::GetPrefixedName() const {
  return GetNamespace() == Namespace::kKml ? schema_->GetName()
                                           : QLatin1String(kExtPrefixColon) + schema_->GetName();
}

const Field* SchemaObject::FindField(const QString& name, Namespace ns,
                                     const Schema** childSchema) const {
  return schema_->FindField(name, ns, childSchema);
}

void SchemaObject::SetHandlerFunc(HandlerType type, HandlerFunc function) {
  if (!handlers_)
    handlers_ = std::make_unique<HandlerMap>();
  if (function)
    (*handlers_)[type] = function;
  else
    handlers_->erase(type);
  if (!IsInputHandler(type))
    return;
  bool any = false;
  for (const auto& handler : *handlers_)
    any = any || IsInputHandler(handler.first);
  SetBit(kBitHasInputHandler, any);
}

HandlerFunc SchemaObject::GetHandlerFunc(HandlerType type) const {
  if (!handlers_)
    return nullptr;
  const auto place = handlers_->find(type);
  return place == handlers_->end() ? nullptr : place->second;
}

void SchemaObject::ClearHandlerMap() {
  handlers_.reset();
  SetBit(kBitHasInputHandler, false);
}

bool SchemaObject::OnHandler(HandlerType type, HandlerEvent& event) {
  return OnHandler(this, type, event);
}

bool SchemaObject::OnHandler(SchemaObject* sender, HandlerType type, HandlerEvent& event) {
  const HandlerFunc function = GetHandlerFunc(type);
  if (!function)
    return true;
  event.sender = sender;
  event.target = this;
  event.type = type;
  return function(event);
}

void SchemaObject::RequireParentInheritedVisibility(bool update) {
  SetBit(kBitVisibleWithoutOwner, false);
  if (update)
    UpdateInheritedVisibility();
}

void SchemaObject::OnUrlLoad(const StrField&, SchemaObject*) {}

FromStringResult SchemaObject::fromString(const QString&) {
  return FromStringResult::kUnsupportedData;
}

void SchemaObject::AddOwner(SchemaObject& newOwner) {
  if (owner_ == &newOwner || GetBit(kBitDeleting) || newOwner.GetBit(kBitDeleting) ||
      !newOwner.FindObject(*this, nullptr))
    return;
  ChildMove move;
  move.Take(*this);
  EnterPlace(newOwner, -1);
  move.Tell();
}

void SchemaObject::AddArrayOwner(SchemaObject& newOwner, int index) {
  AddOwner(newOwner);
  arrayIndex_ = index;
}

void SchemaObject::RemOwner(SchemaObject& former) {
  LeavePlace(former);
  if (GetRefCount() > 1)
    NotifyOwnerChanged();
}

void SchemaObject::RemArrayOwner(SchemaObject& former, int) { RemOwner(former); }

void SchemaObject::EnterPlace(SchemaObject& owner, int index) {
  owner_ = &owner;
  arrayIndex_ = index;
}

void SchemaObject::LeavePlace(SchemaObject&) {
  owner_ = nullptr;
  arrayIndex_ = -1;
}

const Field* SchemaObject::Vacate(SchemaObject& child) {
  int index = -1;
  const Field* const field = SchemaObject::FindObject(child, &index); // the place, no reference
  if (field)
    static_cast<const ChildField*>(field)->TakeOut(*this, index);
  else
    RemoveDisplaced(child);
  return field;
}

SchemaObject* SchemaObject::GetOwner(int) const { return owner_; }

void SchemaObject::stolen(SchemaObject& child) {
  int index = -1;
  if (const Field* field = FindObject(child, &index))
    field->set(*this, nullptr, index);
}

void SchemaObject::NotifyOwnerChanged() {
  const DeletionDeferrer deferrer;
  UpdateInheritedVisibility();
  UpdateInheritedShouldNotifySubFieldChanged();
}

bool SchemaObject::UpdateInheritedVisibility() {
  const SchemaObject* owner = GetOwner(0);
  const bool visible =
      GetBit(kBitVisibility) && !GetBit(kBitHiddenByLod) &&
      (owner ? owner->GetBit(kBitInheritedVisibility) : GetBit(kBitVisibleWithoutOwner));
  if (visible == GetBit(kBitInheritedVisibility))
    return false;
  SetBit(kBitInheritedVisibility, visible);
  NotifyInheritedVisibilityChanged();
  return true;
}

void SchemaObject::UpdateInheritedShouldNotifySubFieldChanged() {
  if (const SchemaObject* owner = GetOwner(0))
    SetInheritedShouldNotifySubFieldChanged(owner->GetBit(kBitInheritedNotifySubField));
}

void SchemaObject::SetInheritedShouldNotifySubFieldChanged(bool value) {
  if (value == GetBit(kBitInheritedNotifySubField))
    return;
  SetBit(kBitInheritedNotifySubField, value);
  NotifyInheritedShouldNotifySubFieldChanged();
}

bool SchemaObject::HandsDown() {
  SchemaObject* const owner = GetOwner(0);
  const bool isInOpen = owner && owner->GetBit(kBitBeingRead);
  if (!isInOpen && !GetBit(kBitBeingRead))
    return true;
  SetBit(kBitInheritanceWaits, true);
  if (isInOpen)
    owner->SetBit(kBitInheritanceWaits, true);
  return false;
}

void SchemaObject::HandDown() {
  const DeletionDeferrer deferrer;
  SetBit(kBitInheritanceWaits, false);
  for (const Field* field : schema_->GetObjectFields()) {
    if (field->HasFlag(Field::kNoWrite))
      continue;
    for (int i = 0; i < (field->IsArray() ? field->getCount(*this) : 1); ++i) {
      const RefPtr<SchemaObject> child(field->GetObject(*this, i));
      if (child)
        child->NotifyOwnerChanged();
    }
  }
  if (!HasKeptValues())
    return;
  for (const KeptField& kept : mmvector<KeptField>(unknownData_->kept->GetFields())) {
    for (const KeptValue& value : kept.displaced) {
      if (value.object)
        value.object->NotifyOwnerChanged();
    }
  }
}

void SchemaObject::StopReading() {
  SetBit(kBitBeingRead, false);
  revision_ = ObjectObserver::NextRevision();
}

void SchemaObject::EndReading() {
  StopReading();
  if (GetBit(kBitInheritanceWaits) && HandsDown())
    HandDown();
}

void SchemaObject::NotifyFieldChanged(const Field& field) {
  const ThreadContext* context = ThreadContext::GetCurrent();
  if (!context || context->notifyEnabled)
    ObjectObserver::NotifyFieldChanged(*this, field);
}

void SchemaObject::NotifySubFieldChanged(SchemaObject& changed, const Field& field,
                                         VisitedObjects& visited) {
  const DeletionDeferrer deferrer;
  const std::size_t begun = visited.size();
  // In a loop, so that no nesting overflows the stack.
  for (SchemaObject* at = this; SchemaObject* const owner = at->owner_; at = owner) {
    visited.push_back(at);
    if (!ObjectObserver::TellOwner(*owner, *at, changed, field, visited))
      break;
    if (owner->HasManyOwners()) {
      owner->NotifySubFieldChanged(changed, field, visited);
      break;
    }
  }
  while (visited.size() > begun)
    visited.pop_back();
}

void SchemaObject::FinishCreation(bool notify) {
  if (notify)
    NotifyPostCreate();
  else
    SetBit(kBitNoCreationNotify, true);
}

void SchemaObject::NotifyPostCreate() { CreationObserver::NotifyPostCreate(*this); }

void SchemaObject::NotifyPreDelete() {
  if (GetBit(kBitDeleting))
    return;
  const DeletionDeferrer deferrer;
  Orphans orphans;
  Announce(orphans);
  // In a list, so that no nesting overflows the stack.
  while (!orphans.empty()) {
    SchemaObject& child = *orphans.back();
    orphans.pop_back();
    if (child.GetBit(kBitDeleting))
      continue;
    if (child.GetRefCount() > 1 || child.FindKeeper()) // held by more than its former place
      child.NotifyOwnerChanged();
    else
      child.Announce(orphans);
  }
}

void SchemaObject::Announce(Orphans& orphans) {
  SetBit(kBitDeleting, true);
  CreationObserver::NotifyPreDelete(*this);
  if (IsInMap())
    GetMap()->erase(*this);
  if (HasHandler(kHandlerPreDelete)) {
    HandlerEvent event;
    OnHandler(kHandlerPreDelete, event);
  }
  ObjectObserver::NotifyPreDelete(*this);
  observers_.Clear();
  LeaveOwners();

  const std::size_t first = orphans.size();
  ForEachChild(*this, [&](SchemaObject& child) {
    if (child.GetHome() != this)
      return;
    child.LeavePlace(*this);
    orphans.push_back(&child);
  });
  std::reverse(orphans.begin() + first, orphans.end()); // the first one is the next
}

Document* SchemaObject::GetOwnerDocument() const {
  for (const SchemaObject* object = this; object; object = object->GetOwner(0)) {
    if (Document* const document = object->AsDocument())
      return document;
    if (object->GetOwnerCount() > 1)
      return nullptr;
  }
  return nullptr;
}

QString SchemaObject::ComposeHintString() const {
  return HintTargets::ComposeHintString(hintTarget_);
}

double SchemaObject::GetInterpolant(int i, int a, int b) const {
  const SchemaObject* owner = GetOwner(0);
  return owner ? owner->GetInterpolant(i, a, b) : (i - a) / static_cast<double>(b - a);
}

} // namespace vorrel::kestan
