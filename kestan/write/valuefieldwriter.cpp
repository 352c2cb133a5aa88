// The writing half of the field classes that are templates over their value.

#include "kestan/core/keptvalues.h"
#include "kestan/core/simplearrayfield.h"
#include "kestan/core/simplefield.h"
#include "kestan/core/simplelistfield.h"
#include "kestan/core/typedfield_impl.h"
#include "kestan/core/valuetext.h"
#include "kestan/write/writestate.h"

#include <type_traits>
#include <utility>

namespace vorrel::kestan {

template <class T>
void SimpleField<T>::WriteKml(const SchemaObject& object, WriteState& state) const {
  if constexpr (std::is_same_v<T, QString>) // always a plain member: no copy is needed
    this->WriteValue(object, state, this->template Member<T>(object) != this->GetDefault());
  else
    this->WriteValue(object, state,
                     !typedfield_detail::IsSame(this->get(object), this->GetDefault()));
}

template <class T>
void SimpleField<T>::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  WriteValueText(state.stream(), this->get(object));
}

template <class T> void SimpleArrayField<T>::WriteEntry(const T& value, WriteState& state) const {
  WriteValueText(state.stream(), value);
}

template <class T>
void SimpleArrayField<T>::WriteKml(const SchemaObject& object, WriteState& state) const {
  if (this->HasFlag(Field::kNoWrite))
    return;
  const mmvector<bool>* undefined =
      undefinedOffset_ ? &this->template Member<mmvector<bool>>(object, undefinedOffset_) : nullptr;
  const mmvector<T>& array = this->Array(object);
  const KeptField* const kept = object.GetKeptField(*this);
  auto text = kept ? kept->entries.begin() : mmvector<std::pair<int, QString>>::const_iterator();
  for (std::size_t i = 0; i < array.size(); ++i) {
    if (kept && text != kept->entries.end() && static_cast<std::size_t>(text->first) == i) {
      this->WriteKept(object, {nullptr, text->second, QString()}, state);
      ++text;
      continue;
    }
    if (undefined && i < undefined->size() && (*undefined)[i]) {
      this->WriteEmptyElement(state);
      continue;
    }
    this->WriteElementStart(object, state);
    WriteEntry(array[i], state);
    this->WriteElementEnd(state);
  }
}

template <class T>
void SimpleListField<T>::WriteKml(const SchemaObject& object, WriteState& state) const {
  const mmvector<T>& array = this->Array(object);
  const bool isGiven = !array.empty() && !this->HasFlag(Field::kNoWrite);
  if (!isGiven && !object.KeepsElement(*this))
    return;
  this->WriteElementStart(object, state);
  const char* separator = "";
  for (const T& value : array) {
    state.out(separator);
    WriteValueText(state.stream(), value);
    separator = " ";
  }
  state.WriteIndent();
  this->WriteElementEnd(state);
}

// The classes themselves are instantiated beside the rest of their members.

template void SimpleField<int>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<int>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<unsigned int>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<unsigned int>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<unsigned short>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<unsigned short>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<long long>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<long long>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<bool>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<bool>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<float>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<float>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<double>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<double>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<QString>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<QString>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<Color32>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<Color32>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<DateTime>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<DateTime>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<Vec3<double>>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<Vec3<double>>::WriteKmlString(const SchemaObject&, WriteState&) const;
template void SimpleField<LegacyScreenVec>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleField<LegacyScreenVec>::WriteKmlString(const SchemaObject&, WriteState&) const;

template void SimpleArrayField<int>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<int>::WriteEntry(const int&, WriteState&) const;
template void SimpleArrayField<unsigned int>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<unsigned int>::WriteEntry(const unsigned int&, WriteState&) const;
template void SimpleArrayField<unsigned short>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<unsigned short>::WriteEntry(const unsigned short&,
                                                           WriteState&) const;
template void SimpleArrayField<float>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<float>::WriteEntry(const float&, WriteState&) const;
template void SimpleArrayField<double>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<double>::WriteEntry(const double&, WriteState&) const;
template void SimpleArrayField<QString>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<QString>::WriteEntry(const QString&, WriteState&) const;
template void SimpleArrayField<DateTime>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<DateTime>::WriteEntry(const DateTime&, WriteState&) const;
template void SimpleArrayField<Color32>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<Color32>::WriteEntry(const Color32&, WriteState&) const;
template void SimpleArrayField<Vec3<double>>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<Vec3<double>>::WriteEntry(const Vec3<double>&, WriteState&) const;
template void SimpleArrayField<Vec3<float>>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleArrayField<Vec3<float>>::WriteEntry(const Vec3<float>&, WriteState&) const;

template void SimpleListField<int>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleListField<unsigned int>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleListField<unsigned short>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleListField<float>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleListField<double>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleListField<QString>::WriteKml(const SchemaObject&, WriteState&) const;
template void SimpleListField<Vec3<double>>::WriteKml(const SchemaObject&, WriteState&) const;

} // namespace vorrel::kestan
