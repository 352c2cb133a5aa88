#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class SchemaObjectContainerSchema;
class SchemaObjectList;

/// A view on the list of children of an object, with the same operations whatever their class, for
/// scripts. It keeps the object alive.
class KESTAN_EXPORT SchemaObjectContainer : public SchemaObject {
public:
  using ClassSchema = SchemaObjectContainerSchema;
  static const Schema& GetClassSchema();
  ~SchemaObjectContainer() override;

  // Each kind of container takes objects of its classes only, and answers false, or -1, for null,
  // for others, and while it has no parent.
  /// The object whose list this is from now on.
  virtual bool SetParent(SchemaObject* parent) = 0;
  virtual bool add(SchemaObject* object) = 0;
  virtual bool rem(SchemaObject* object) = 0;
  virtual bool insert(int index, SchemaObject* object) = 0;
  virtual int find(SchemaObject* object) const = 0;
  /// Throws `std::out_of_range` for an index out of range.
  virtual SchemaObject* get(int index) const = 0;
  virtual int GetLength() const = 0;

  bool SetContainer(SchemaObject* parent) { return SetParent(parent); }
  /// Adds an object, or moves one of the list to its end.
  bool append(SchemaObject* object);
  bool remove(SchemaObject* object);
  /// Null `before` appends. False when `before` isn't in the list.
  bool InsertBefore(SchemaObject* object, SchemaObject* before);
  /// Puts `object` in the place of `old`. False when `old` isn't in the list.
  bool replace(SchemaObject* object, SchemaObject* old);
  int length() const { return GetLength(); }
  /// Null for an empty list.
  bool first(RefPtr<SchemaObject>& out) const;
  bool last(RefPtr<SchemaObject>& out) const;
  /// The elements as they are now.
  RefPtr<SchemaObjectList> GetObjectList() const;

protected:
  SchemaObjectContainer(const Schema& schema, const KmlId& id, const QString& baseUrl);

  SchemaObject* GetParent() const { return parent_.get(); }
  void StoreParent(SchemaObject& parent) { parent_ = &parent; }

private:
  RefPtr<SchemaObject> parent_;
};

} // namespace vorrel::kestan
