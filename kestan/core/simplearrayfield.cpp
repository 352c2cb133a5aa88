#include "kestan/core/simplearrayfield.h"

#include "kestan/core/textfaults.h"
#include "kestan/core/typedarrayfield_impl.h"
#include "kestan/host/convert.h"

#include <algorithm>

namespace vorrel::kestan {

template <class T>
SimpleArrayField<T>::SimpleArrayField(Schema& schema, const QString& name, unsigned offset,
                                      Field::Type type, unsigned flags)
    : TypedArrayField<T>(schema, name, offset, type, flags) {}

template <class T> SimpleArrayField<T>& SimpleArrayField<T>::SetUndefinedOffset(unsigned offset) {
  undefinedOffset_ = offset;
  return *this;
}

template <class T>
void SimpleArrayField<T>::copy(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  if (undefinedOffset_ != 0)
    this->template Member<mmvector<bool>>(dst, undefinedOffset_) =
        this->template Member<mmvector<bool>>(src, undefinedOffset_);
  TypedArrayField<T>::copy(dst, src, deep);
}

template <class T> T SimpleArrayField<T>::Parse(const QString& text) const {
  return ValueFromString<T>(text);
}

template <class T>
FromStringResult SimpleArrayField<T>::fromString(SchemaObject& object, const AttributeList*,
                                                 const NamespaceList*, const QString& text,
                                                 int index, Update*) const {
  mmvector<T>& array = this->Array(object);
  const std::size_t place = index < 0 ? array.size() : static_cast<std::size_t>(index);
  if (undefinedOffset_ != 0) {
    auto& undefined = this->template Member<mmvector<bool>>(object, undefinedOffset_);
    if (text.isEmpty())
      undefined.resize(std::max(undefined.size(), place + 1));
    if (place < undefined.size())
      undefined[place] = text.isEmpty();
  }
  if (place >= array.size())
    array.resize(place + 1);
  array[place] = text.isEmpty() ? T{} : Parse(text);
  this->NotifyFieldChanged(object);
  return FromStringResult::kOk;
}

template <class T>
void SimpleArrayField<T>::FindFaults(const SchemaObject&, const AttributeList*,
                                     TextFaults& faults) const {
  if (undefinedOffset_ == 0 || !faults.GetText().isEmpty())
    faults.CheckValue<T>();
}

Vec3<double> NormLLAArrayField::Parse(const QString& text) const {
  return convert::LLAToNorm(ValueFromString<Vec3<double>>(text));
}

Vec3<float> Vec3fArrayField::Parse(const QString& text) const {
  return ValueFromString<Vec3<float>>(text);
}

template class TypedArrayField<int>;
template class TypedArrayField<unsigned int>;
template class TypedArrayField<unsigned short>;
template class TypedArrayField<float>;
template class TypedArrayField<double>;
template class TypedArrayField<QString>;
template class TypedArrayField<DateTime>;
template class TypedArrayField<Color32>;
template class TypedArrayField<Vec3<double>>;
template class TypedArrayField<Vec3<float>>;

template class SimpleArrayField<int>;
template class SimpleArrayField<unsigned int>;
template class SimpleArrayField<unsigned short>;
template class SimpleArrayField<float>;
template class SimpleArrayField<double>;
template class SimpleArrayField<QString>;
template class SimpleArrayField<DateTime>;
template class SimpleArrayField<Color32>;
template class SimpleArrayField<Vec3<double>>;
template class SimpleArrayField<Vec3<float>>;

} // namespace vorrel::kestan
