#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

namespace typedcontainer_detail {

template <class T> T* Cast(SchemaObject* object) {
  return object && object->isOfType(T::GetClassSchema()) ? static_cast<T*>(object) : nullptr;
}

} // namespace typedcontainer_detail

template <class Parent, class Element>
Parent* TypedContainer<Parent, Element>::TypedParent() const {
  return static_cast<Parent*>(GetParent());
}

template <class Parent, class Element>
bool TypedContainer<Parent, Element>::SetParent(SchemaObject* parent) {
  Parent* const typed = typedcontainer_detail::Cast<Parent>(parent);
  if (typed)
    StoreParent(*typed);
  return typed != nullptr;
}

template <class Parent, class Element>
bool TypedContainer<Parent, Element>::add(SchemaObject* object) {
  Element* const element = typedcontainer_detail::Cast<Element>(object);
  if (!element || !TypedParent())
    return false;
  Add(*TypedParent(), *element);
  return true;
}

template <class Parent, class Element>
bool TypedContainer<Parent, Element>::rem(SchemaObject* object) {
  Element* const element = typedcontainer_detail::Cast<Element>(object);
  if (!element || !TypedParent())
    return false;
  Remove(*TypedParent(), *element);
  return true;
}

template <class Parent, class Element>
bool TypedContainer<Parent, Element>::insert(int index, SchemaObject* object) {
  Element* const element = typedcontainer_detail::Cast<Element>(object);
  if (!element || !TypedParent())
    return false;
  Insert(*TypedParent(), index, *element);
  return true;
}

template <class Parent, class Element>
int TypedContainer<Parent, Element>::find(SchemaObject* object) const {
  const Element* const element = typedcontainer_detail::Cast<Element>(object);
  return element && TypedParent() ? Find(*TypedParent(), *element) : -1;
}

template <class Parent, class Element>
SchemaObject* TypedContainer<Parent, Element>::get(int index) const {
  Q_ASSERT(index >= 0 && index < GetLength());
  return Get(*TypedParent(), index);
}

template <class Parent, class Element> int TypedContainer<Parent, Element>::GetLength() const {
  return TypedParent() ? Count(*TypedParent()) : 0;
}

} // namespace vorrel::kestan
