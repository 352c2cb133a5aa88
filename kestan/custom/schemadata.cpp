#include "kestan/custom/schemadata.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objurlfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/schemadataschema.h"
#include "kestan/read/typedloadobserver.h"
#include "kestan/write/writestate.h"

namespace vorrel::kestan {

template class SchemaT<SchemaData, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<SchemaData>;
template class ObjUrlField<CustomSchema>;

namespace {

const SchemaDataSchema& Fields() { return SchemaDataSchema::GetSingleton(); }

/// Whoever hears of a value may change the list.
template <class T>
void SetValues(const mmvector<RefPtr<T>>& datas, const RefPtr<SchemaObject>& object) {
  for (std::size_t i = 0; i < datas.size(); ++i) {
    if (const RefPtr<T> data = datas[i])
      data->SetValueInObject(*object);
  }
}

} // namespace

SchemaDataSchema::SchemaDataSchema() : SchemaT("SchemaData", nullptr, Namespace::kKml) {}

const Schema& SchemaData::GetClassSchema() { return SchemaDataSchema::GetSingleton(); }

SchemaData::SchemaData(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

SchemaData::~SchemaData() { NotifyPreDelete(); }

void SchemaData::SetSchemaUrl(const QString& url) { Fields().schemaUrl.CheckSet(*this, url); }

SimpleData* SchemaData::FindSimpleData(const QString& name) const {
  for (const RefPtr<SimpleData>& data : simpleDatas_) {
    if (data && data->GetName() == name)
      return data.get();
  }
  return nullptr;
}

SchemaObject* SchemaData::GetCustomObject() {
  const DeletionDeferrer deferrer;
  if (schema_ && !customObject_) {
    const RefPtr<CustomSchema> schema = schema_;
    const RefPtr<SchemaObject> object = schema->CreateInstance(
        KmlId(QString(), GetUrl()), GetBaseUrl(), MemoryManager::GetManager(this));
    if (schema != schema_ || customObject_)
      return customObject_.get(); // who heard of it has seen to that
    customObject_ = object;
    isStale_ = true;
  }
  if (isStale_)
    UpdateSimpleDatas();
  return customObject_.get();
}

void SchemaData::UpdateSimpleDatas() {
  const DeletionDeferrer deferrer;
  const RefPtr<SchemaObject> object = customObject_;
  isStale_ = false;
  if (!object)
    return;
  SetValues(simpleDatas_, object);
  SetValues(simpleArrayDatas_, object);
}

void SchemaData::NotifyValueChanged(AbstractSimpleData& data) {
  const RefPtr<SchemaObject> object = customObject_;
  if (object && data.isOfType(SimpleData::GetClassSchema()))
    data.SetValueInObject(*object);
  else
    isStale_ = true; // the entries of an array come one by one
}

void SchemaData::CollectSchemas(WriteState& state) const {
  if (schema_)
    state.AddSchema(*schema_);
}

void SchemaData::NotifyFieldChanged(const Field& field) {
  if (&field == &Fields().schemaUrl)
    TypedLoadObserver<CustomSchema>::Create(*this, Fields().schemaUrl);
  else
    isStale_ = true;
  SchemaObject::NotifyFieldChanged(field);
}

void SchemaData::OnUrlLoad(const StrField&, SchemaObject* loaded) {
  const bool isSchema = loaded && loaded->isOfType(CustomSchema::GetClassSchema());
  CustomSchema* const schema = isSchema ? static_cast<CustomSchema*>(loaded) : nullptr;
  if (schema_.get() == schema)
    return;
  const DeletionDeferrer deferrer;
  schema_ = RefPtr<CustomSchema>(schema);
  customObject_.reset();
}

} // namespace vorrel::kestan
