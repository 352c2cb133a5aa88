#pragma once

#include "kestan/core/simplefield.h"

namespace vorrel::kestan {

/// A position: longitude and latitude in degrees and altitude in metres as text, stored in the
/// normalised form of `convert::LLAToNorm`.
class KESTAN_EXPORT NormLLAField : public SimpleField<Vec3<double>> {
public:
  using SimpleField::SimpleField;

  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
  QString toString(const SchemaObject& object, int index) const override;
  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;
};

} // namespace vorrel::kestan
