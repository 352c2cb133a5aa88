#pragma once

#include "kestan/core/simplefield.h"

namespace vorrel::kestan {

/// A time; the undefined time isn't written.
class KESTAN_EXPORT DateTimeField final : public SimpleField<DateTime> {
public:
  using SimpleField::SimpleField;

  bool IsUndefined(const SchemaObject& object) const override;
};

} // namespace vorrel::kestan
