#include "kestan/feature/schemaobjectlist.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/schemaobjectlistschema.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<SchemaObjectList, NewInstancePolicy, NoDerivedPolicy>;

SchemaObjectListSchema::SchemaObjectListSchema()
    : SchemaT("ObjectList", nullptr, Namespace::kKml) {}

const Schema& SchemaObjectList::GetClassSchema() { return SchemaObjectListSchema::GetSingleton(); }

SchemaObjectList::SchemaObjectList(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

SchemaObjectList::~SchemaObjectList() { NotifyPreDelete(); }

bool SchemaObjectList::AddObject(SchemaObject& object) {
  objects_.emplace_back(&object);
  return true;
}

bool SchemaObjectList::InsertObject(int index, SchemaObject& object) {
  if (&object == this)
    return false;
  if (index < 0 || index >= GetLength())
    return AddObject(object);
  objects_.insert(objects_.begin() + index, RefPtr<SchemaObject>(&object));
  return true;
}

int SchemaObjectList::FindObject(const SchemaObject& object) const {
  const auto place =
      std::find_if(objects_.begin(), objects_.end(),
                   [&](const RefPtr<SchemaObject>& entry) { return entry.get() == &object; });
  return place == objects_.end() ? -1 : static_cast<int>(place - objects_.begin());
}

bool SchemaObjectList::RemObject(SchemaObject& object) { return RemObject(FindObject(object)); }

bool SchemaObjectList::RemObject(int index) {
  if (index < 0 || index >= GetLength())
    return false;
  objects_.erase(objects_.begin() + index);
  return true;
}

int SchemaObjectList::GetLength() const { return static_cast<int>(objects_.size()); }

SchemaObject* SchemaObjectList::GetObject(int index) const {
  return objects_.at(static_cast<std::size_t>(index)).get();
}

} // namespace vorrel::kestan
