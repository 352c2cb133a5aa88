#pragma once

#include "kestan/core/color32.h"
#include "kestan/core/typedarrayfield.h"
#include "kestan/host/datetime.h"
#include "kestan/host/vec3.h"

namespace vorrel::kestan {

/// Many values, one element each. The reader hands the elements over one by one, and they are
/// appended. A text that doesn't convert gives the zero of `T`; one that is no time or no position
/// is kept.
template <class T> class KESTAN_EXPORT SimpleArrayField : public TypedArrayField<T> {
public:
  SimpleArrayField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
                   unsigned flags = 0);

  /// Names an `mmvector<bool>` member that marks the entries whose element was empty.
  SimpleArrayField& SetUndefinedOffset(unsigned offset);

  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  typename TypedArrayField<T>::State GetState(const SchemaObject& object) const override;
  void Exchange(SchemaObject& object, typename TypedArrayField<T>::State& others) const override;

protected:
  /// False, and the value as it was, when the text doesn't convert.
  virtual bool Parse(const QString& text, T& value) const;
  virtual void WriteEntry(const T& value, WriteState& state) const;

private:
  unsigned undefinedOffset_ = 0;
};

/// Positions, with longitude, latitude and altitude separated by blanks in each element; stored
/// normalised.
class KESTAN_EXPORT NormLLAArrayField final : public SimpleArrayField<Vec3<double>> {
public:
  using SimpleArrayField::SimpleArrayField;

protected:
  bool Parse(const QString& text, Vec3<double>& value) const override;
  void WriteEntry(const Vec3<double>& value, WriteState& state) const override;
};

/// Triples of floats, separated by blanks in each element.
class KESTAN_EXPORT Vec3fArrayField final : public SimpleArrayField<Vec3<float>> {
public:
  using SimpleArrayField::SimpleArrayField;

protected:
  void WriteEntry(const Vec3<float>& value, WriteState& state) const override;
};

extern template class SimpleArrayField<int>;
extern template class SimpleArrayField<unsigned int>;
extern template class SimpleArrayField<unsigned short>;
extern template class SimpleArrayField<float>;
extern template class SimpleArrayField<double>;
extern template class SimpleArrayField<QString>;
extern template class SimpleArrayField<DateTime>;
extern template class SimpleArrayField<Color32>;
extern template class SimpleArrayField<Vec3<double>>;
extern template class SimpleArrayField<Vec3<float>>;

} // namespace vorrel::kestan
