#include "kestan/core/simplearrayfield.h"

#include "kestan/core/textfaults.h"
#include "kestan/core/typedarrayfield_impl.h"
#include "kestan/host/convert.h"

#include <algorithm>
#include <type_traits>

namespace vorrel::kestan {

namespace {

/// Values of which the zero would be another time, or another place.
template <class T>
constexpr bool kKeepsText = std::is_same_v<T, DateTime> || std::is_same_v<T, Vec3<double>> ||
                            std::is_same_v<T, Vec3<float>>;

} // namespace

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

template <class T>
typename TypedArrayField<T>::State SimpleArrayField<T>::GetState(const SchemaObject& object) const {
  auto state = TypedArrayField<T>::GetState(object);
  if (undefinedOffset_ != 0)
    state.undefined = this->template Member<mmvector<bool>>(object, undefinedOffset_);
  return state;
}

template <class T>
void SimpleArrayField<T>::Exchange(SchemaObject& object,
                                   typename TypedArrayField<T>::State& others) const {
  if (undefinedOffset_ != 0)
    this->template Member<mmvector<bool>>(object, undefinedOffset_).swap(others.undefined);
  TypedArrayField<T>::Exchange(object, others);
}

template <class T> bool SimpleArrayField<T>::Parse(const QString& text, T& value) const {
  return ConvertFromString(text, value);
}

template <class T>
FromStringResult SimpleArrayField<T>::fromString(SchemaObject& object, const AttributeList*,
                                                 const NamespaceList*, const QString& text,
                                                 int index, Update* update) const {
  if (update && !this->StartUpdate(object, *update))
    return FromStringResult::kSecurityViolation;
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
  array[place] = T{};
  const bool isValue = text.isEmpty() || Parse(text, array[place]);
  const DeletionDeferrer deferrer;
  this->NotifyFieldChanged(object);
  if (!isValue && kKeepsText<T>)
    object.KeepEntry(*this, static_cast<int>(place), text);
  return FromStringResult::kOk;
}

template <class T>
void SimpleArrayField<T>::FindFaults(const SchemaObject&, const AttributeList*,
                                     TextFaults& faults) const {
  if (undefinedOffset_ == 0 || !faults.GetText().isEmpty())
    faults.CheckValue<T>();
}

bool NormLLAArrayField::Parse(const QString& text, Vec3<double>& value) const {
  if (!SimpleArrayField::Parse(text, value))
    return false;
  value = convert::LLAToNorm(value);
  return true;
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
