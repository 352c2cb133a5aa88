#pragma once

#include "kestan/feature/schemaobjectcontainer.h"

namespace vorrel::kestan {

/// The container of a list of `Element`s in a `Parent`: checks the classes once for all kinds.
///
/// Members are defined in `typedcontainer_impl.h`, which the source of each kind includes.
template <class Parent, class Element>
class KESTAN_EXPORT TypedContainer : public SchemaObjectContainer {
public:
  bool SetParent(SchemaObject* parent) final;
  bool add(SchemaObject* object) final;
  bool rem(SchemaObject* object) final;
  bool insert(int index, SchemaObject* object) final;
  int find(SchemaObject* object) const final;
  SchemaObject* get(int index) const final;
  int GetLength() const final;

protected:
  using SchemaObjectContainer::SchemaObjectContainer;

private:
  // The operations of the parent on its list.
  virtual void Add(Parent& parent, Element& element) const = 0;
  virtual void Remove(Parent& parent, Element& element) const = 0;
  virtual void Insert(Parent& parent, int index, Element& element) const = 0;
  virtual int Find(const Parent& parent, const Element& element) const = 0;
  virtual Element* Get(const Parent& parent, int index) const = 0;
  virtual int Count(const Parent& parent) const = 0;

  Parent* TypedParent() const;
};

} // namespace vorrel::kestan
