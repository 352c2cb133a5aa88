#pragma once

#include "kestan/core/simplefield.h"

namespace vorrel::kestan {

/// A time; the undefined time isn't written. A text that is no time is kept.
class KESTAN_EXPORT DateTimeField final : public SimpleField<DateTime> {
public:
  using SimpleField::SimpleField;

  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  bool IsUndefined(const SchemaObject& object) const override;
};

} // namespace vorrel::kestan
