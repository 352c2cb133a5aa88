#pragma once

#include "kestan/core/typedarrayfield.h"
#include "kestan/host/vec3.h"

namespace vorrel::kestan {

/// Many values in one element, separated by white space. A text replaces what was there.
template <class T> class KESTAN_EXPORT SimpleListField : public TypedArrayField<T> {
public:
  SimpleListField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
                  unsigned flags = 0);

  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  bool IsRepeatable() const override { return false; }
  void GetForm(const SchemaObject& object, QString& text, QString& attrs) const override;
};

extern template class SimpleListField<int>;
extern template class SimpleListField<unsigned int>;
extern template class SimpleListField<unsigned short>;
extern template class SimpleListField<float>;
extern template class SimpleListField<double>;
extern template class SimpleListField<QString>;
extern template class SimpleListField<Vec3<double>>;

} // namespace vorrel::kestan
