#pragma once

#include "kestan/core/simplefield.h"

namespace vorrel::kestan {

/// One bit of a 32-bit word of the object. Always has a default.
class KESTAN_EXPORT BitField final : public SimpleField<bool> {
public:
  BitField(Schema& schema, const QString& name, unsigned bitIndex, bool defaultValue,
           unsigned offset, Field::Type type, unsigned flags = 0);

  unsigned getSize() const override;
  unsigned GetAlign() const override;
  void construct(SchemaObject& object) const override;
  void destruct(SchemaObject& object) const override;
  bool get(const SchemaObject& object) const override;
  void SetTypedObject(SchemaObject& object, bool value) const override;

private:
  void Assign(SchemaObject& object, bool value) const;

  unsigned mask_;
};

} // namespace vorrel::kestan
