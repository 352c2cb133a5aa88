#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class SchemaObjectListSchema;

/// A list of objects for scripts. It counts references, and changes no owner.
class KESTAN_EXPORT SchemaObjectList final : public SchemaObject {
public:
  using ClassSchema = SchemaObjectListSchema;
  static const Schema& GetClassSchema();
  SchemaObjectList(const KmlId& id, const QString& baseUrl);
  ~SchemaObjectList() override;

  using SchemaObject::FindObject;

  /// Appends, also what is in the list already.
  virtual bool AddObject(SchemaObject& object);
  /// An index out of range appends. False for the list itself.
  virtual bool InsertObject(int index, SchemaObject& object);
  /// The first place of the object, or -1.
  virtual int FindObject(const SchemaObject& object) const;
  // Both answer whether anything went.
  virtual bool RemObject(SchemaObject& object);
  virtual bool RemObject(int index);
  virtual int GetLength() const;
  /// Throws `std::out_of_range` for an index out of range.
  virtual SchemaObject* GetObject(int index) const;

private:
  mmvector<RefPtr<SchemaObject>> objects_;
};

} // namespace vorrel::kestan
