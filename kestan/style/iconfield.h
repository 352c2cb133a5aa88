#pragma once

#include "kestan/core/objfield.h"
#include "kestan/style/icon.h"

namespace vorrel::kestan {

/// The icon of an object. Icons compare by what they show.
class KESTAN_EXPORT IconField final : public ObjField<Icon> {
public:
  IconField(Schema& schema, unsigned offset, unsigned flags = 0);

  bool equals(const SchemaObject& a, const SchemaObject& b) const override;

  using ObjField::CheckSet;
  /// The setter of classes with a mask of specified fields: the present icon sends no notice, but
  /// counts as given.
  void CheckSet(SchemaObject& object, Icon* icon, unsigned& specified) const;
};

} // namespace vorrel::kestan
