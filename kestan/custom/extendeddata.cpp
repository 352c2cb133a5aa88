#include "kestan/custom/extendeddata.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/custom/extendeddataschema.h"
#include "kestan/custom/simpledata.h"

#include <QStringList>

namespace vorrel::kestan {

template class SchemaT<ExtendedData, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<ExtendedData>;

ExtendedDataSchema::ExtendedDataSchema() : SchemaT("ExtendedData", nullptr, Namespace::kKml) {}

const Schema& ExtendedData::GetClassSchema() { return ExtendedDataSchema::GetSingleton(); }

ExtendedData::ExtendedData(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

ExtendedData::~ExtendedData() { NotifyPreDelete(); }

Data* ExtendedData::FindData(const QString& name) const {
  for (const RefPtr<Data>& data : datas_) {
    if (data && data->GetName() == name)
      return data.get();
  }
  return nullptr;
}

SchemaData* ExtendedData::FindSchemaData(const QString& name) const {
  for (const RefPtr<SchemaData>& data : schemaDatas_) {
    if (data && data->GetName() == name)
      return data.get();
  }
  return nullptr;
}

void ExtendedData::CollectSchemas(WriteState& state) const {
  for (const RefPtr<SchemaData>& data : schemaDatas_) {
    if (data)
      data->CollectSchemas(state);
  }
}

bool ExtendedData::FindEntityValue(const QString& key, QString* value) const {
  value->clear();
  if (key.contains(QLatin1Char('/'))) {
    const QStringList names = key.split(QLatin1Char('/'));
    const SchemaData* const data = names.size() == 2 ? FindSchemaData(names[0]) : nullptr;
    const SimpleData* const item = data ? data->FindSimpleData(names[1]) : nullptr;
    if (item)
      *value = item->GetValue();
    return item != nullptr;
  }
  const Data* const item = FindData(key);
  if (item)
    *value = item->toString();
  return item != nullptr;
}

} // namespace vorrel::kestan
