#include "kestan/custom/customschema.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/librarypart.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/core/textfaults.h"
#include "kestan/core/threadcontext.h"
#include "kestan/custom/customschemaobject.h"
#include "kestan/custom/customschemaschema.h"
#include "kestan/host/job.h"
#include "kestan/host/system.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace vorrel::kestan {

template class SchemaT<CustomSchema, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<CustomSchema>;

namespace {

constexpr unsigned kLog2MinimumBuckets = 4;
/// Up to so many declarations a look at each is cheaper than a hash.
constexpr std::size_t kFewFields = 16;

const CustomSchemaSchema& Fields() { return CustomSchemaSchema::GetSingleton(); }

CustomSchemaTable& GetTable(ThreadContext& context) {
  if (!context.customSchemas)
    context.customSchemas = std::make_shared<CustomSchemaTable>(kLog2MinimumBuckets);
  return *context.customSchemas;
}

/// The classes of a worker become those of the main thread.
class CustomPart final : public LibraryPart {
public:
  bool MergeContext(ThreadContext& from, const IJobContinuator& continuator) override {
    return from.customSchemas && !GetTable(*ThreadContext::GetMain())
                                      .MergeSome(*from.customSchemas, true, [&continuator] {
                                        return continuator.ShouldContinue();
                                      });
  }
};

CustomPart s_custom_part;

} // namespace

CustomSchemaSchema::CustomSchemaSchema() : SchemaT("Schema", nullptr, Namespace::kKml) {}

void ParentField::FindFaults(const SchemaObject&, const AttributeList*, TextFaults& faults) const {
  const Schema* const parent = Schema::FindNamedSchema(faults.GetText(), Namespace::kKml);
  if (!faults.GetText().isEmpty() && !(parent && parent->IsDerivable()))
    faults.Add(ReportCode::kUnknownWord);
}

const Schema& CustomSchema::GetClassSchema() { return CustomSchemaSchema::GetSingleton(); }

CustomSchema::CustomSchema(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  SchemaObject::NotifyPostCreate();
}

CustomSchema::~CustomSchema() {
  NotifyPreDelete();
  LeaveNames();
}

QString CustomSchema::GetCacheName(const QString& url, const QString& name) {
  return url + QLatin1Char('#') + name;
}

CustomSchema* CustomSchema::FindNamedCustomSchema(const QString& url, const QString& name) {
  const auto& table = ThreadContext::GetCurrent()->customSchemas;
  return table && table->count() > 0
             ? static_cast<CustomSchema*>(table->find(GetCacheName(url, name)))
             : nullptr;
}

void CustomSchema::SetName(const QString& name) { Fields().name.CheckSet(*this, name); }

void CustomSchema::SetParent(const QString& parent) { Fields().parent.CheckSet(*this, parent); }

CustomField* CustomSchema::GetCustomField(const QString& name) const {
  if (customFields_.size() > kFewFields) {
    if (byName_.isEmpty()) {
      for (auto field = customFields_.rbegin(); field != customFields_.rend(); ++field) {
        if (*field)
          byName_[(*field)->GetName()] = field->get(); // so that the first one stays
      }
    }
    return byName_.value(name);
  }
  for (const RefPtr<CustomField>& field : customFields_) {
    if (field && field->GetName() == name)
      return field.get();
  }
  return nullptr;
}

bool CustomSchema::DeclaresSame(const CustomSchema& other) const {
  const auto isSame = [](const RefPtr<CustomField>& a, const RefPtr<CustomField>& b) {
    return a == b || (a && b && &a->GetSchema() == &b->GetSchema() &&
                      a->GetName() == b->GetName() && a->GetTypeName() == b->GetTypeName());
  };
  return this == &other ||
         (parent_ == other.parent_ &&
          std::equal(customFields_.begin(), customFields_.end(), other.customFields_.begin(),
                     other.customFields_.end(), isSame));
}

RefPtr<SchemaObject> CustomSchema::CreateInstance(const KmlId& id, const QString& baseUrl,
                                                  MemoryManager* manager) const {
  const RefPtr<const CustomSchema> kept(this);
  const_cast<CustomSchema*>(this)->Settle();
  const Schema& base = *GetBase();
  if (&base == &SchemaObject::GetClassSchema()) {
    void* const storage = doNew(GetSize(), manager);
    return RefPtr<SchemaObject>(::new (storage) CustomSchemaObject(*this, id, baseUrl));
  }
  RefPtr<SchemaObject> object = base.CreateInstanceDerived(*this, id, baseUrl, manager);
  if (object)
    Schema::NotifyPostCreate(*object); // which the constructor of the base leaves to others
  return object;
}

void CustomSchema::ConstructCustomFields(SchemaObject& object) const {
  ++instances_;
  for (const Field* field : GetFields())
    field->construct(object);
  GetBase()->ConstructCustomFields(object);
}

void CustomSchema::DestructCustomFields(SchemaObject& object) const {
  for (const Field* field : GetFields())
    field->destruct(object);
  GetBase()->DestructCustomFields(object);
  --instances_;
}

void CustomSchema::NotifyFieldChanged(const Field& field) {
  if (&field == &Fields().name) {
    EnterUnderName();
  } else if (&field == &Fields().customFields) {
    ForgetNames();
    SetLoose(); // the order may be another one
  } else if (&field == &Fields().parent) {
    SetLoose();
    Settle();
  }
  SchemaObject::NotifyFieldChanged(field);
}

void CustomSchema::CopyNonFieldStuff(const SchemaObject& src) {
  SchemaObject::CopyNonFieldStuff(src);
  if (src.isOfType(GetClassSchema()))
    SetParent(static_cast<const CustomSchema&>(src).parent_);
}

const Schema& CustomSchema::FindParent() const {
  const Schema* const parent =
      parent_.isEmpty() ? nullptr : FindNamedSchema(parent_, Namespace::kKml);
  return parent ? *parent : SchemaObject::GetClassSchema();
}

void CustomSchema::TakeBack(std::unique_ptr<Field> field) {
  SetLoose();
  if (HasInstances() || GetBit(kBitDeleting))
    retired_.push_back(std::move(field));
  else
    RemoveField(*field);
}

void CustomSchema::Settle() {
  if (!isLoose_ || HasInstances())
    return;
  isLoose_ = false;
  SetBase(&FindParent());
  QSet<const Field*> retired;
  for (const std::unique_ptr<Field>& field : retired_)
    retired.insert(field.get());
  mmvector<Field*> fields;
  for (const RefPtr<CustomField>& declaration : customFields_) {
    if (declaration && declaration->CreateField())
      fields.push_back(declaration->field_.get());
  }
  // Those of clients follow.
  const QSet<const Field*> declared(fields.begin(), fields.end());
  for (Field* field : GetFields()) {
    if (!retired.contains(field) && !declared.contains(field))
      fields.push_back(field);
  }
  if (fields != GetFields() || !retired_.empty())
    SetFields(std::move(fields));
  retired_.clear();
}

void CustomSchema::EnterUnderName() {
  LeaveNames();
  const QString cacheName = GetCacheName(GetUrl(), name_);
  SetKey(cacheName);
  if (name_.isEmpty() || GetBit(kBitDeleting))
    return;
  CustomSchemaTable& table = GetTable(*ThreadContext::GetCurrent());
  if (Schema* const former = table.find(cacheName))
    table.erase(*former);
  table.insert(*this);
}

void CustomSchema::LeaveNames() {
  if (Schema::IsInMap())
    Schema::GetMap()->erase(*this);
}

/// Only its own thread may take it out of where it's found.
bool CustomSchema::IsOfOtherThread() const {
  const ThreadContext* const context = ThreadContext::GetCurrent();
  const auto* const names = Schema::GetMap();
  const auto* const ids = SchemaObject::GetMap();
  return (names && !(context && context->customSchemas.get() == names)) || (ids && ids != context);
}

bool CustomSchema::FindKeeper() {
  // On the main thread, what no merge has brought there belongs to a worker that has let go.
  if (System::IsMainThread() || !IsOfOtherThread())
    return false;
  UnrefJob::UnrefOnMain(RefPtr<SchemaObject>(this));
  return true;
}

} // namespace vorrel::kestan
