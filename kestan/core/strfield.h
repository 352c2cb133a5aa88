#pragma once

#include "kestan/core/simplefield.h"

namespace vorrel::kestan {

/// A string that is written escaped. An empty one isn't written, unless the object knows that it
/// was given: then it may stand in the way of another one.
class KESTAN_EXPORT StrField : public SimpleField<QString> {
public:
  using SimpleField::SimpleField;

  bool IsUndefined(const SchemaObject& object) const override;
  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;
};

/// The `id` attribute. An object is found under its new id; written is the id that it carries in
/// the present output.
class KESTAN_EXPORT IdField final : public StrField {
public:
  using StrField::StrField;

  void SetTypedObject(SchemaObject& object, QString value) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
};

/// A URL, "#" and the id of an object. It's written so that it leads there from the output.
class KESTAN_EXPORT ReferenceField final : public StrField {
public:
  using StrField::StrField;

  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;
};

/// A reference whose text is kept as it was read, in its escaped form, beside the value.
class KESTAN_EXPORT HrefStrField final : public StrField {
public:
  HrefStrField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
               unsigned flags, unsigned rawOffset);

  bool IsUndefined(const SchemaObject& object) const override;
  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;

private:
  unsigned rawOffset_;
};

} // namespace vorrel::kestan
