#pragma once

#include "kestan/core/enumfield.h"

namespace vorrel::kestan {

/// The states of an `ItemIcon`.
///
/// In a list, a state belongs to the last icon that claims it. What is left to the icons in front
/// may have no name of its own: then the text also names what a later icon takes away again, so
/// that it reads back as the same states.
class KESTAN_EXPORT ItemIconStateField final : public EnumField {
public:
  using EnumField::EnumField;

  /// An empty text means any state. A number stands for states without a name.
  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  void FindFaults(const SchemaObject& object, const AttributeList* attrs,
                  TextFaults& faults) const override;
  QString toString(const SchemaObject& object, int index) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;
};

} // namespace vorrel::kestan
