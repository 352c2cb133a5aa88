#include "kestan/core/schemaobject.h"

#include "kestan/core/creationobserver.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobjectschema.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/core/threadcontext.h"
#include "kestan/feature/kmlschema.h" // hint targets
#include "kestan/host/url.h"

namespace vorrel::kestan {

template class SchemaT<SchemaObject, NoInstancePolicy, NoDerivedPolicy>;

namespace {

/// Handler types that count as input handlers.
bool IsInputHandler(HandlerType type) {
  return (type >= 2 && type <= 8) || type == 25 || type == 26;
}

/// Deletion of a tree goes down at most this many owners at a time. What lies deeper waits in a
/// list, so that no nesting overflows the stack.
constexpr int kMaxNestedDeletions = 32;

struct Deletions {
  int depth = 0;
  mmvector<SchemaObject*> waiting;
};

thread_local Deletions t_deletions;

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
  if (!GetBit(kBitNoCreationNotify))
    CreationObserver::NotifyPreDelete(*this);
  schema_->DestructCustomFields(*this);
  schema_->unref();
  if (IsInMap())
    GetMap()->erase(*this);
}

void SchemaObject::orphaned() {
  // An observer that takes a reference while the object goes must not start it all again.
  if (GetBit(kBitOrphaned))
    return;
  SetBit(kBitOrphaned, true);
  if (t_deletions.depth == kMaxNestedDeletions) {
    t_deletions.waiting.push_back(this);
    return;
  }
  ++t_deletions.depth;
  delete this;
  if (t_deletions.depth == 1) {
    while (!t_deletions.waiting.empty()) {
      SchemaObject* next = t_deletions.waiting.back();
      t_deletions.waiting.pop_back();
      delete next;
    }
    mmvector<SchemaObject*>().swap(t_deletions.waiting);
  }
  --t_deletions.depth;
}

/// Only for an object with an id.
void SchemaObject::AddToObjectHash(std::uint32_t hashValue) {
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
  if (owner_ == &newOwner)
    return;
  if (owner_)
    owner_->stolen(*this);
  owner_ = &newOwner;
  arrayIndex_ = -1;
  NotifyOwnerChanged();
}

void SchemaObject::AddArrayOwner(SchemaObject& newOwner, int index) {
  AddOwner(newOwner);
  arrayIndex_ = index;
}

void SchemaObject::RemOwner(SchemaObject&) {
  owner_ = nullptr;
  arrayIndex_ = -1;
  if (GetRefCount() > 1)
    NotifyOwnerChanged();
}

void SchemaObject::RemArrayOwner(SchemaObject& former, int) {
  RemOwner(former);
  arrayIndex_ = -1;
}

SchemaObject* SchemaObject::GetOwner(int) const { return owner_; }

void SchemaObject::stolen(SchemaObject& child) {
  int index = -1;
  if (const Field* field = FindObject(child, &index))
    field->set(*this, nullptr, index);
}

void SchemaObject::NotifyOwnerChanged() {
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
}

void SchemaObject::EndReading() {
  SetBit(kBitBeingRead, false);
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
  if (!owner_)
    return;
  visited.push_back(this);
  ObjectObserver::NotifySubFieldChanged(*owner_, *this, changed, field, visited);
  visited.pop_back();
}

bool SchemaObject::HasRoomFor(const Field& field, bool) const {
  return field.IsArray() || field.HasFlag(Field::kNoWrite) || !field.GetObject(*this, -1);
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
  SetBit(kBitDeleting, true);
  if (HasHandler(kHandlerPreDelete)) {
    HandlerEvent event;
    OnHandler(kHandlerPreDelete, event);
  }
  ObjectObserver::NotifyPreDelete(*this);
  for (const Field* field : schema_->GetObjectFields()) {
    if (field->HasFlag(Field::kNoWrite))
      continue;
    if (field->IsArray()) {
      for (int i = 0, count = field->getCount(*this); i < count; ++i) {
        if (SchemaObject* element = field->GetObject(*this, i))
          element->RemOwner(*this);
      }
    } else if (SchemaObject* child = field->GetObject(*this, -1)) {
      child->RemOwner(*this);
    }
  }
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
  return KmlSchema::GetSingleton().ComposeHintString(hintTarget_);
}

double SchemaObject::GetInterpolant(int i, int a, int b) const {
  const SchemaObject* owner = GetOwner(0);
  return owner ? owner->GetInterpolant(i, a, b) : (i - a) / static_cast<double>(b - a);
}

} // namespace vorrel::kestan
