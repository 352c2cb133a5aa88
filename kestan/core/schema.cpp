#include "kestan/core/schema.h"

#include "kestan/core/creationobserver.h"
#include "kestan/core/library.h"
#include "kestan/core/librarypart.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objurlfield.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/schemaobjectschema.h"

#include <algorithm>
#include <mutex>

namespace vorrel {

bool HashMapTraits<QString, kestan::Schema>::Equals(const kestan::Schema& schema,
                                                    const QString& key) {
  return schema.GetKey() == key;
}

bool HashMapTraits<QString, kestan::Schema>::Equals(const kestan::Schema& a,
                                                    const kestan::Schema& b) {
  return a.GetKey() == b.GetKey();
}

std::uint32_t HashMapTraits<QString, kestan::Schema>::Hash(const kestan::Schema& schema) {
  return hash<QString>()(schema.GetKey());
}

} // namespace vorrel

namespace vorrel::kestan {

SpinLock Schema::s_lock_;
bool Schema::s_enable_experimental_fields_ = true;

namespace {

using Registry = HashMap<QString, Schema>;

/// All schemas that an element name leads to. Exists from its first use, since schemas may be
/// built before the library is initialised.
Registry& SchemaHash() {
  static Registry registry(8);
  return registry;
}

QByteArray MakeTag(const QString& name, Namespace ns) {
  return (ns == Namespace::kKml ? QByteArray() : QByteArray(kExtPrefixColon)) + name.toUtf8();
}

template <class T> void EraseFirst(mmvector<T*>& list, const T* entry) {
  const auto place = std::find(list.begin(), list.end(), entry);
  if (place != list.end())
    list.erase(place);
}

} // namespace

Schema::Schema(const QString& name, unsigned size, const Schema* base, Namespace ns,
               bool experimental)
    : ownSize_(size), size_(size), name_(name), key_(MakeKey(name, ns)), tag_(MakeTag(name, ns)),
      ns_(ns), experimental_(experimental) {
  if (!base && name != QLatin1String("SchemaObject"))
    base = &SchemaObject::GetClassSchema();
  construct(base);
  if (!experimental || s_enable_experimental_fields_)
    SchemaHash().insert(*this);
}

Schema::Schema() : Schema(0, &SchemaObject::GetClassSchema()) {}

Schema::Schema(unsigned size, const Schema* base) : ownSize_(size), size_(size) { construct(base); }

Schema::~Schema() {
  {
    const std::lock_guard<SpinLock> guard(s_lock_);
    const std::lock_guard<SpinLock> observerGuard(CreationObserver::s_lock_);
    JoinBase(nullptr);
    for (CreationObserver* observer : mmvector<CreationObserver*>(creationObservers_)) {
      if (observer->schema_ != this)
        continue;
      RemCreationObserver(*observer); // from those that derive from this one, too
      observer->schema_ = nullptr;
    }
    for (Schema* schema : derived_)
      schema->base_ = nullptr;
  }
  if (IsInMap())
    GetMap()->erase(*this);
}

void Schema::construct(const Schema* base) {
  fieldCount_ = 0;
  fields_.reserve(8);
  SetBase(base);
}

void Schema::SetBase(const Schema* newBase) {
  if (newBase == base_ || HasInstances())
    return;
  {
    const std::lock_guard<SpinLock> guard(s_lock_);
    const std::lock_guard<SpinLock> observerGuard(CreationObserver::s_lock_);
    JoinBase(newBase);
    if (base_) {
      creationObservers_ = base_->creationObservers_;
      hasCreationObservers_ = !creationObservers_.empty();
    }
  }
  SetFields(fields_);
}

/// Both locks are held.
void Schema::JoinBase(const Schema* newBase) {
  if (base_) {
    Schema* const last = base_->derived_.back();
    base_->derived_[place_] = last;
    last->place_ = place_;
    base_->derived_.pop_back();
  }
  base_ = newBase;
  if (!base_)
    return;
  place_ = base_->derived_.size();
  base_->derived_.push_back(this);
}

void Schema::SetFields(mmvector<Field*> own) {
  mmvector<const ObjUrlFieldBase*> ownReferences;
  for (const ObjUrlFieldBase* field : references_) {
    if (&field->GetSchema() == this)
      ownReferences.push_back(field);
  }
  const auto inherit = [this](auto list) {
    if (base_)
      this->*list = base_->*list;
    else
      (this->*list).clear();
  };
  inherit(&Schema::serializedFields_);
  inherit(&Schema::objectFields_);
  inherit(&Schema::attributes_);
  inherit(&Schema::unnamedFields_);
  inherit(&Schema::references_);
  references_.insert(references_.end(), ownReferences.begin(), ownReferences.end());
  fieldCount_ = base_ ? base_->fieldCount_ : 0;
  size_ = base_ ? std::max(ownSize_, base_->size_) : ownSize_;
  hidesFields_ = false;
  fieldsByKey_.clear();
  for (const auto* list : {&serializedFields_, &attributes_}) {
    for (const Field* field : *list) {
      if (!field->GetName().isEmpty())
        fieldsByKey_.insert(field->GetKey(), field);
    }
  }
  fields_.clear();
  for (Field* field : own) {
    field->TakePlace(field->getSize(), field->GetAlign());
    AddField(*field, field->GetObjSchema());
  }
}

void Schema::AddField(Field& field, const Schema* objSchema) {
  field.index_ = fieldCount_++;
  if (field.GetType() == Field::kHidden)
    return;
  fields_.push_back(&field);
  if (!field.GetName().isEmpty()) {
    const Field*& named = fieldsByKey_[field.GetKey()];
    hidesFields_ |= named != nullptr;
    named = &field;
  } else {
    // A derived class may widen or take over the slot of an inherited field.
    if (objSchema) {
      const auto taken =
          std::find_if(unnamedFields_.begin(), unnamedFields_.end(), [&](const Field* other) {
            return other->GetObjSchema() && other->GetObjSchema()->SubstitutesFor(*objSchema);
          });
      if (taken != unnamedFields_.end()) {
        hidesFields_ = true;
        unnamedFields_.erase(taken);
      }
    }
    unnamedFields_.push_back(&field);
  }
  if (field.GetType() == Field::kAttribute) {
    attributes_.push_back(&field);
    return;
  }
  serializedFields_.push_back(&field);
  if (field.GetType() == Field::kObject)
    objectFields_.push_back(&field);
}

void Schema::RemoveSerializedField(const Field& field) {
  for (auto* list : {&serializedFields_, &objectFields_, &attributes_, &unnamedFields_})
    EraseFirst<Field>(*list, &field);
  fieldsByKey_.remove(field.GetName());
}

void Schema::RemoveField(const Field& field) {
  EraseFirst<Field>(fields_, &field);
  if (hidesFields_) { // which may come to light
    SetFields(fields_);
    return;
  }
  for (auto* list : {&serializedFields_, &objectFields_, &attributes_, &unnamedFields_})
    EraseFirst<Field>(*list, &field);
  fieldsByKey_.remove(field.GetKey());
}

QString Schema::MakeKey(const QString& name, Namespace ns) {
  if (ns == Namespace::kKml)
    return name;
  QString key;
  key.reserve(name.size() + 2);
  key.append(QChar('0' + static_cast<int>(ns))).append(QLatin1Char(':')).append(name);
  return key;
}

const Schema* Schema::FindNamedSchema(const QString& name, Namespace ns) {
  return SchemaHash().find(MakeKey(name, ns));
}

const Field* Schema::FindField(const QString& name, Namespace ns,
                               const Schema** childSchema) const {
  if (childSchema)
    *childSchema = nullptr;
  if (ns == Namespace::kNone || ns == Namespace::kUnknown)
    return nullptr;
  const QString key = MakeKey(name, ns);
  const auto named = fieldsByKey_.constFind(key);
  if (named != fieldsByKey_.constEnd())
    return named.value();
  const Schema* schema = SchemaHash().find(key);
  if (childSchema)
    *childSchema = schema;
  if (!schema)
    return nullptr;
  for (const Field* field : unnamedFields_) {
    if (field->GetObjSchema() && schema->SubstitutesFor(*field->GetObjSchema()))
      return field;
  }
  return nullptr;
}

bool Schema::SubstitutesFor(const Schema& other) const {
  for (const Schema* schema = this; schema; schema = schema->base_) {
    if (schema == &other)
      return true;
  }
  return false;
}

RefPtr<SchemaObject> Schema::FindCreateInstance(const KmlId& id, const QString& baseUrl,
                                                MemoryManager* manager) const {
  SchemaObject* present = SchemaObject::find(id);
  if (present && &present->GetSchema() == this)
    return RefPtr<SchemaObject>(present);
  return CreateInstance(id, baseUrl, manager);
}

RefPtr<SchemaObject> Schema::CreateInstanceDerived(const Schema&, const KmlId&, const QString&,
                                                   MemoryManager*) const {
  return {};
}

void Schema::ConstructCustomFields(SchemaObject&) const {}

void Schema::DestructCustomFields(SchemaObject&) const {}

void Schema::AddCreationObserver(CreationObserver& observer) const {
  creationObservers_.push_back(&observer);
  hasCreationObservers_ = true;
  for (const Schema* schema : derived_)
    schema->AddCreationObserver(observer);
}

void Schema::RemCreationObserver(CreationObserver& observer) const {
  EraseFirst<CreationObserver>(creationObservers_, &observer);
  hasCreationObservers_ = !creationObservers_.empty();
  for (const Schema* schema : derived_)
    schema->RemCreationObserver(observer);
}

void Schema::NotifyPostCreate(SchemaObject& object) { object.NotifyPostCreate(); }

void Schema::Initialize(const KestanCreationParams& params) {
  s_enable_experimental_fields_ = params.get_enable_experimental_kml();
  const NotificationDeferrer deferrer;
  SchemaObjectSchema::GetSingleton();
  SchemaRegistrar::CreateSingletons();
  LibraryPart::ForEach([](LibraryPart& part) { part.MakeSharedObjects(); });
}

void Schema::Shutdown() {
  LibraryPart::ForEach([](LibraryPart& part) { part.DropSharedObjects(); });
  SchemaRegistrar::DeleteSingletons();
}

} // namespace vorrel::kestan
