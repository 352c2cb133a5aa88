#pragma once

#include "kestan/core/objectobserver.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/typedfield.h"
#include "kestan/host/datetime.h"
#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/vec3.h"

#include <new>
#include <tuple>
#include <utility>

namespace vorrel::kestan {

namespace typedfield_detail {

/// The order of values; vectors are ordered component by component.
template <class T> bool IsLess(const T& a, const T& b) { return a < b; }
inline bool IsLess(const Vec3<double>& a, const Vec3<double>& b) {
  return std::tie(a.x, a.y, a.z) < std::tie(b.x, b.y, b.z);
}
inline bool IsLess(const LegacyScreenVec& a, const LegacyScreenVec& b) {
  return std::tie(a.x, a.y) < std::tie(b.x, b.y);
}

/// Whether a new value would change anything. Two times of one instant may be written otherwise.
template <class T> bool IsSame(const T& a, const T& b) { return a == b; }
inline bool IsSame(const DateTime& a, const DateTime& b) { return a.isEqualByComponent(b); }

} // namespace typedfield_detail

template <class T>
TypedField<T>::TypedField(Schema& schema, const QString& name, unsigned offset, Type type,
                          unsigned flags, unsigned size, unsigned align)
    : Field(schema, name, offset, type, flags, size, align) {}

template <class T> TypedField<T>& TypedField<T>::SetDefault(const T& value) {
  defaultValue_ = value;
  SetFlagBit(kHasDefault, true);
  return *this;
}

template <class T> TypedField<T>& TypedField<T>::SetMin(const T& value) {
  minValue_ = value;
  SetFlagBit(kHasMin, true);
  return *this;
}

template <class T> TypedField<T>& TypedField<T>::SetMax(const T& value) {
  maxValue_ = value;
  SetFlagBit(kHasMax, true);
  return *this;
}

template <class T> unsigned TypedField<T>::getSize() const { return sizeof(T); }

template <class T> unsigned TypedField<T>::GetAlign() const { return alignof(T); }

template <class T> void TypedField<T>::construct(SchemaObject& object) const {
  new (&Member<T>(object)) T(HasFlag(kHasDefault) ? defaultValue_ : T{});
}

template <class T> void TypedField<T>::destruct(SchemaObject& object) const {
  Member<T>(object).~T();
}

template <class T> bool TypedField<T>::equals(const SchemaObject& a, const SchemaObject& b) const {
  return get(a) == get(b);
}

template <class T> int TypedField<T>::compare(const SchemaObject& a, const SchemaObject& b) const {
  const T x = get(a);
  const T y = get(b);
  if (x == y)
    return 0;
  return typedfield_detail::IsLess(y, x) ? 1 : -1;
}

template <class T> T TypedField<T>::get(const SchemaObject& object) const {
  return Member<T>(object);
}

template <class T> T TypedField<T>::Clamp(T value) const {
  if (HasFlag(kHasMin) && typedfield_detail::IsLess(value, minValue_))
    value = minValue_;
  if (HasFlag(kHasMax) && typedfield_detail::IsLess(maxValue_, value))
    value = maxValue_;
  return value;
}

template <class T> void TypedField<T>::SetTypedObject(SchemaObject& object, T value) const {
  Member<T>(object) = Clamp(std::move(value));
  NotifyFieldChanged(object);
}

template <class T>
void TypedField<T>::CheckSet(SchemaObject& object, const T& value, unsigned& specified) const {
  if (!typedfield_detail::IsSame(get(object), value) || object.HasKeptValue(*this))
    SetTypedObject(object, value);
  else
    ObjectObserver::SetSpecified(object, specified, specified | GetMaskBit());
}

template <class T> void TypedField<T>::CheckSet(SchemaObject& object, const T& value) const {
  if (!typedfield_detail::IsSame(get(object), value) || object.HasKeptValue(*this))
    SetTypedObject(object, value);
}

} // namespace vorrel::kestan
