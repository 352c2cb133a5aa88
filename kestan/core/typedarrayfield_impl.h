#pragma once

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/simplefield_impl.h"
#include "kestan/core/typedarrayfield.h"

#include <new>

namespace vorrel::kestan {

template <class E>
TypedArrayField<E>::TypedArrayField(Schema& schema, const QString& name, unsigned offset, Type type,
                                    unsigned flags)
    : Field(schema, name, offset, type, flags, sizeof(mmvector<E>), alignof(mmvector<E>)) {}

template <class E> unsigned TypedArrayField<E>::getSize() const { return sizeof(mmvector<E>); }

template <class E> unsigned TypedArrayField<E>::GetAlign() const { return alignof(mmvector<E>); }

template <class E> void TypedArrayField<E>::construct(SchemaObject& object) const {
  new (&Array(object)) mmvector<E>();
}

template <class E> void TypedArrayField<E>::destruct(SchemaObject& object) const {
  Array(object).~mmvector<E>();
}

template <class E> int TypedArrayField<E>::getCount(const SchemaObject& object) const {
  return static_cast<int>(Array(object).size());
}

template <class E> void TypedArrayField<E>::setCount(SchemaObject& object, unsigned count) const {
  Array(object).resize(count);
}

template <class E>
void TypedArrayField<E>::copy(SchemaObject& dst, const SchemaObject& src, bool) const {
  if (&dst == &src)
    return;
  const DeletionDeferrer deferrer;
  const mmvector<E>& from = Array(src);
  const bool hadAny = !Array(dst).empty();
  // One notice an entry, all of them behind the last one: who is told may change the list.
  std::size_t notices = std::max<std::size_t>(from.size(), hadAny ? 1 : 0);
  Array(dst) = from;
  for (; notices > 0 && !dst.GetBit(kBitDeleting); --notices)
    NotifyFieldChanged(dst);
}

template <class E>
void TypedArrayField<E>::clone(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  copy(dst, src, deep);
}

template <class E>
void TypedArrayField<E>::merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                               bool useB) const {
  copy(dst, useB ? b : a, false);
}

template <class E>
typename TypedArrayField<E>::State TypedArrayField<E>::GetState(const SchemaObject& object) const {
  return {Array(object), {}};
}

template <class E> void TypedArrayField<E>::Exchange(SchemaObject& object, State& others) const {
  Array(object).swap(others.values);
  NotifyFieldChanged(object);
}

template <class E>
QString TypedArrayField<E>::toString(const SchemaObject& object, int index) const {
  const mmvector<E>& array = Array(object);
  if (index < 0 || static_cast<std::size_t>(index) >= array.size())
    return ValueToString(E{});
  return ValueToString(array[static_cast<std::size_t>(index)]);
}

} // namespace vorrel::kestan
