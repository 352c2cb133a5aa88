#pragma once

#include "kestan/feature/schemaobjectcontainer.h"

namespace vorrel::kestan {

template <class Parent, class Element> class TypedContainerSchema;

/// The container of a list of `Element`s in a `Parent`.
template <class Parent, class Element>
class KESTAN_EXPORT TypedContainer final : public SchemaObjectContainer {
public:
  using ClassSchema = TypedContainerSchema<Parent, Element>;
  static const Schema& GetClassSchema();
  TypedContainer(const KmlId& id, const QString& baseUrl);
  ~TypedContainer() override;

  bool SetParent(SchemaObject* parent) override;
  bool add(SchemaObject* object) override;
  bool rem(SchemaObject* object) override;
  bool insert(int index, SchemaObject* object) override;
  int find(SchemaObject* object) const override;
  SchemaObject* get(int index) const override;
  int GetLength() const override;

private:
  Parent* TypedParent() const;
  /// The object as an element of the list; null for others, and while there's no list.
  Element* Cast(SchemaObject* object) const;
};

} // namespace vorrel::kestan
