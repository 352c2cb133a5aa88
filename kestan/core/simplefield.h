#pragma once

#include "kestan/core/color32.h"
#include "kestan/core/typedfield.h"
#include "kestan/host/datetime.h"
#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/vec3.h"

namespace vorrel::kestan {

/// A member with one value: parsed from text, copied, merged and written by the common rules.
/// A text that doesn't convert stores the zero of `T`.
template <class T> class KESTAN_EXPORT SimpleField : public TypedField<T> {
public:
  SimpleField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
              unsigned flags = 0);

  bool IsNumeric() const override;
  int GetDataType() const override;
  bool KeepsText() const override;
  /// A number that isn't finite has no text.
  bool IsUndefined(const SchemaObject& object) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void clone(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
             bool useB) const override;
  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
  QString toString(const SchemaObject& object, int index) const override;
  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;

protected:
  SimpleField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
              unsigned flags, unsigned size, unsigned align);

  /// What follows the conversion of a text: an edit or the new value, and the attributes.
  FromStringResult Store(SchemaObject& object, T value, const AttributeList* attrs,
                         const NamespaceList* namespaces, Update* update) const;
  /// Has the update record the value. `T` counts as an amount, so that it's blended.
  virtual FromStringResult CreateEdit(SchemaObject& object, T value, Update& update) const;
};

extern template class TypedField<int>;
extern template class TypedField<unsigned int>;
extern template class TypedField<unsigned short>;
extern template class TypedField<long long>;
extern template class TypedField<bool>;
extern template class TypedField<float>;
extern template class TypedField<double>;
extern template class TypedField<QString>;
extern template class TypedField<Color32>;
extern template class TypedField<DateTime>;
extern template class TypedField<Vec3<double>>;
extern template class TypedField<LegacyScreenVec>;

extern template class SimpleField<int>;
extern template class SimpleField<unsigned int>;
extern template class SimpleField<unsigned short>;
extern template class SimpleField<long long>;
extern template class SimpleField<bool>;
extern template class SimpleField<float>;
extern template class SimpleField<double>;
extern template class SimpleField<QString>;
extern template class SimpleField<Color32>;
extern template class SimpleField<DateTime>;
extern template class SimpleField<Vec3<double>>;
extern template class SimpleField<LegacyScreenVec>;

} // namespace vorrel::kestan
