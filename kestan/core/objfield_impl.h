#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemaobject.h"

#include <new>

namespace vorrel::kestan {

template <class T>
ObjField<T>::ObjField(Schema& schema, const QString& name, const Schema& objSchema, unsigned offset,
                      unsigned flags)
    : ObjFieldBase(schema, name, objSchema, offset, flags, sizeof(RefPtr<T>), alignof(RefPtr<T>)) {}

template <class T> unsigned ObjField<T>::getSize() const { return sizeof(RefPtr<T>); }

template <class T> unsigned ObjField<T>::GetAlign() const { return alignof(RefPtr<T>); }

template <class T> void ObjField<T>::construct(SchemaObject& object) const {
  new (&Member<RefPtr<T>>(object)) RefPtr<T>();
}

template <class T> void ObjField<T>::destruct(SchemaObject& object) const {
  Member<RefPtr<T>>(object).~RefPtr<T>();
}

template <class T> SchemaObject* ObjField<T>::GetObject(const SchemaObject& object, int) const {
  return Member<RefPtr<T>>(object).get();
}

template <class T> RefPtr<T> ObjField<T>::get(const SchemaObject& object) const {
  return Member<RefPtr<T>>(object);
}

template <class T>
void ObjField<T>::SetTypedObject(SchemaObject& owner, const RefPtr<T>& child) const {
  set(owner, child.get(), 0);
}

template <class T> void ObjField<T>::CheckSet(SchemaObject& owner, T* child) const {
  set(owner, child, 0);
}

template <class T> void ObjField<T>::Store(SchemaObject& owner, SchemaObject* child) const {
  Member<RefPtr<T>>(owner) = RefPtr<T>(static_cast<T*>(child));
}

} // namespace vorrel::kestan
