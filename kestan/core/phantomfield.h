#pragma once

#include "kestan/core/field.h"

namespace vorrel::kestan {

/// A field without storage: names a change that is no member, such as "bound".
class KESTAN_EXPORT PhantomField final : public Field {
public:
  PhantomField(Schema& schema, const QString& name);

  unsigned getSize() const override;
  unsigned GetAlign() const override;
  void construct(SchemaObject& object) const override;
  void destruct(SchemaObject& object) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void clone(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
};

} // namespace vorrel::kestan
