#pragma once

#include "kestan/core/simplefield.h"

namespace vorrel::kestan {

/// Reads a screen position from the attributes "x", "y", "xunits" and "yunits". Other attributes
/// are appended to `others`, when given. Null `attrs` give zeros.
KESTAN_EXPORT LegacyScreenVec ReadLegacyScreenVec(const AttributeList* attrs,
                                                  AttributeList* others);

/// A screen position, held by the attributes of an empty element. Always written.
class KESTAN_EXPORT ScreenVecField final : public SimpleField<LegacyScreenVec> {
public:
  using SimpleField::SimpleField;

  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void GetForm(const SchemaObject& object, QString& text, QString& attrs) const override;

private:
  static QString GetAttributes(const LegacyScreenVec& value);
};

} // namespace vorrel::kestan
