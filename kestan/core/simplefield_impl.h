#pragma once

#include "kestan/core/convertfromstring.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/simplefield.h"
#include "kestan/core/textfaults.h"
#include "kestan/core/typedfield_impl.h"
#include "kestan/core/valuetext.h"
#include "kestan/host/utf8ostream.h"

#include <cmath>
#include <type_traits>

namespace vorrel::kestan {

/// The value as it is printed; a string as it is.
template <class T> QString ValueToString(const T& value) {
  if constexpr (std::is_same_v<T, QString>) {
    return value;
  } else {
    Utf8OStream stream;
    WriteValueText(stream, value);
    return QString::fromUtf8(stream.data(), static_cast<int>(stream.size()));
  }
}

template <class T>
SimpleField<T>::SimpleField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
                            unsigned flags)
    : TypedField<T>(schema, name, offset, type, flags) {}

template <class T>
SimpleField<T>::SimpleField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
                            unsigned flags, unsigned size, unsigned align)
    : TypedField<T>(schema, name, offset, type, flags, size, align) {}

template <class T> bool SimpleField<T>::IsNumeric() const {
  return std::is_same_v<T, int> || std::is_same_v<T, float> || std::is_same_v<T, double>;
}

template <class T> int SimpleField<T>::GetDataType() const {
  return std::is_same_v<T, int>       ? 1
         : std::is_same_v<T, float>   ? 2
         : std::is_same_v<T, double>  ? 3
         : std::is_same_v<T, QString> ? 4
                                      : 0;
}

template <class T> bool SimpleField<T>::KeepsText() const { return std::is_same_v<T, QString>; }

template <class T> bool SimpleField<T>::IsUndefined(const SchemaObject& object) const {
  if constexpr (std::is_floating_point_v<T>)
    return !std::isfinite(this->get(object));
  else
    return Field::IsUndefined(object);
}

template <class T>
void SimpleField<T>::copy(SchemaObject& dst, const SchemaObject& src, bool) const {
  this->SetTypedObject(dst, this->get(src));
}

template <class T>
void SimpleField<T>::clone(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  this->copy(dst, src, deep);
}

template <class T>
void SimpleField<T>::merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                           bool useB) const {
  this->copy(dst, useB ? b : a, false);
}

template <class T>
FromStringResult SimpleField<T>::Store(SchemaObject& object, T value, const AttributeList* attrs,
                                       const NamespaceList* namespaces, Update* update) const {
  const DeletionDeferrer deferrer;
  auto result = FromStringResult::kOk;
  if (update)
    result = CreateEdit(object, std::move(value), *update);
  else
    this->SetTypedObject(object, std::move(value));
  if (result == FromStringResult::kOk && attrs && !attrs->empty() &&
      this->KeepsRest(object, update))
    object.SetUnknownFieldAttrs(*this, *attrs, namespaces);
  return result;
}

template <class T>
FromStringResult SimpleField<T>::fromString(SchemaObject& object, const AttributeList* attrs,
                                            const NamespaceList* namespaces, const QString& text,
                                            int, Update* update) const {
  return Store(object, ValueFromString<T>(text), attrs, namespaces, update);
}

template <class T>
void SimpleField<T>::FindFaults(const SchemaObject& object, const AttributeList*,
                                TextFaults& faults) const {
  faults.CheckValue<T>();
  if constexpr (std::is_arithmetic_v<T>) {
    if (faults.IsEmpty() && ValueFromString<T>(faults.GetText()) != this->get(object))
      faults.Add(ReportCode::kLimitedValue);
  }
}

template <class T> QString SimpleField<T>::toString(const SchemaObject& object, int) const {
  return ValueToString(this->get(object));
}

} // namespace vorrel::kestan
