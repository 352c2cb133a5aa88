#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemaobject.h"

#include <algorithm>
#include <new>
#include <utility>

namespace vorrel::kestan {

template <class T>
ObjArrayField<T>::ObjArrayField(Schema& schema, const QString& name, const Schema& objSchema,
                                unsigned offset, unsigned flags)
    : ObjArrayFieldBase(schema, name, objSchema, offset, flags, sizeof(mmvector<RefPtr<T>>),
                        alignof(mmvector<RefPtr<T>>)) {}

template <class T> unsigned ObjArrayField<T>::getSize() const {
  return sizeof(mmvector<RefPtr<T>>);
}

template <class T> unsigned ObjArrayField<T>::GetAlign() const {
  return alignof(mmvector<RefPtr<T>>);
}

template <class T> void ObjArrayField<T>::construct(SchemaObject& object) const {
  new (&Array(object)) mmvector<RefPtr<T>>();
}

template <class T> void ObjArrayField<T>::destruct(SchemaObject& object) const {
  using Vector = mmvector<RefPtr<T>>;
  Array(object).~Vector();
}

template <class T> int ObjArrayField<T>::getCount(const SchemaObject& object) const {
  return static_cast<int>(Array(object).size());
}

template <class T> void ObjArrayField<T>::Grow(SchemaObject& owner, std::size_t count) const {
  Array(owner).resize(count);
}

template <class T>
SchemaObject* ObjArrayField<T>::GetObject(const SchemaObject& object, int index) const {
  const mmvector<RefPtr<T>>& array = Array(object);
  const auto place = static_cast<std::size_t>(index);
  return index >= 0 && place < array.size() ? array[place].get() : nullptr;
}

template <class T>
void ObjArrayField<T>::Store(SchemaObject& owner, int index, SchemaObject* child) const {
  Array(owner)[static_cast<std::size_t>(index)] = RefPtr<T>(static_cast<T*>(child));
}

template <class T> void ObjArrayField<T>::Append(SchemaObject& owner, SchemaObject* child) const {
  Array(owner).emplace_back(static_cast<T*>(child));
}

template <class T> void ObjArrayField<T>::Move(SchemaObject& owner, int from, int to) const {
  const auto begin = Array(owner).begin();
  RefPtr<T> moving = std::move(begin[from]);
  if (from < to)
    std::move(begin + from + 1, begin + to + 1, begin + from);
  else
    std::move_backward(begin + to, begin + from, begin + from + 1);
  begin[to] = std::move(moving);
}

template <class T>
void ObjArrayField<T>::Arrange(SchemaObject& owner, const ArraySlice<const int>& order) const {
  mmvector<RefPtr<T>>& array = Array(owner);
  mmvector<RefPtr<T>> arranged;
  arranged.reserve(array.size());
  for (const int place : order)
    arranged.push_back(std::move(array[static_cast<std::size_t>(place)]));
  array.swap(arranged);
}

template <class T>
void ObjArrayField<T>::Erase(SchemaObject& owner, const ArraySlice<const int>& places) const {
  mmvector<RefPtr<T>>& array = Array(owner);
  const auto begin = array.begin();
  auto to = begin + places[0];
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto end = i + 1 < places.size() ? begin + places[i + 1] : array.end();
    to = std::move(begin + places[i] + 1, end, to);
  }
  array.erase(to, array.end());
}

template <class T> void ObjArrayField<T>::Reverse(SchemaObject& owner) const {
  std::reverse(Array(owner).begin(), Array(owner).end());
}

template <class T>
void ObjArrayField<T>::Renumber(const SchemaObject& owner, int from, int end) const {
  const auto begin = Array(owner).begin();
  for (int i = from; i < end; ++i) {
    if (begin[i])
      begin[i]->SetArrayIndex(i);
  }
}

} // namespace vorrel::kestan
