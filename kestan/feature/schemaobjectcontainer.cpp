#include "kestan/feature/schemaobjectcontainer.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/schemaobjectcontainerschema.h"
#include "kestan/feature/schemaobjectlist.h"

namespace vorrel::kestan {

template class SchemaT<SchemaObjectContainer, NoInstancePolicy, NoDerivedPolicy>;

SchemaObjectContainerSchema::SchemaObjectContainerSchema()
    : SchemaT("SchemaObjectContainer", nullptr, Namespace::kKml) {}

const Schema& SchemaObjectContainer::GetClassSchema() {
  return SchemaObjectContainerSchema::GetSingleton();
}

SchemaObjectContainer::SchemaObjectContainer(const Schema& schema, const KmlId& id,
                                             const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

SchemaObjectContainer::~SchemaObjectContainer() = default;

bool SchemaObjectContainer::append(SchemaObject* object) {
  if (!object)
    return false;
  const RefPtr<SchemaObject> alive(object);
  if (find(object) >= 0)
    rem(object);
  return add(object);
}

bool SchemaObjectContainer::remove(SchemaObject* object) { return object && rem(object); }

bool SchemaObjectContainer::InsertBefore(SchemaObject* object, SchemaObject* before) {
  if (!object)
    return false;
  if (!before)
    return append(object);
  int index = find(before);
  if (index < 0)
    return false;
  if (object == before)
    return true;
  const RefPtr<SchemaObject> alive(object);
  if (find(object) >= 0) {
    rem(object);
    index = find(before);
  }
  return insert(index, object);
}

bool SchemaObjectContainer::replace(SchemaObject* object, SchemaObject* old) {
  if (!object || !old)
    return false;
  int index = find(old);
  if (index < 0)
    return false;
  if (object == old)
    return true;
  const RefPtr<SchemaObject> alive(object);
  if (find(object) >= 0) {
    rem(object);
    index = find(old);
  }
  return rem(old) && insert(index, object);
}

bool SchemaObjectContainer::first(RefPtr<SchemaObject>& out) const {
  out = GetLength() > 0 ? get(0) : nullptr;
  return true;
}

bool SchemaObjectContainer::last(RefPtr<SchemaObject>& out) const {
  const int count = GetLength();
  out = count > 0 ? get(count - 1) : nullptr;
  return true;
}

RefPtr<SchemaObjectList> SchemaObjectContainer::GetObjectList() const {
  const RefPtr<SchemaObjectList> list(new SchemaObjectList(KmlId(), QString()));
  for (int i = 0, count = GetLength(); i < count; ++i) {
    if (SchemaObject* const object = get(i))
      list->AddObject(*object);
  }
  return list;
}

} // namespace vorrel::kestan
