#pragma once

#include "kestan/core/simplefield.h"

namespace vorrel::kestan {

class Enum;

/// An integer member that reads and writes as a name. Always has a default.
class KESTAN_EXPORT EnumField : public SimpleField<int> {
public:
  EnumField(Schema& schema, const QString& name, Enum& values, int defaultValue, unsigned offset,
            Field::Type type, unsigned flags = 0);

  const Enum& GetEnum() const { return *values_; }

  /// For a name that isn't in the table, answers `kUnknownEnumeration`: the value stays, and the
  /// name is kept as text.
  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
  QString toString(const SchemaObject& object, int index) const override;

  using SimpleField::CheckSet;
  /// A value without a name, which no text could give back, changes nothing.
  void CheckSet(SchemaObject& object, const int& value, unsigned& specified) const;

  /// True for a value that no text stands for.
  bool IsUndefined(const SchemaObject& object) const override;
  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;

protected:
  FromStringResult KeepUnknownName(SchemaObject& object, const AttributeList* attrs,
                                   const NamespaceList* namespaces, const QString& text,
                                   const Update* update) const;
  /// A name is no amount.
  FromStringResult CreateEdit(SchemaObject& object, int value, Update& update) const override;

private:
  Enum* values_;
};

} // namespace vorrel::kestan
