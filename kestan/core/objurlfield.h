#pragma once

#include "kestan/core/strfield.h"
#include "kestan/host/refptr.h"

namespace vorrel::kestan {

/// A reference by URL to an object that is held elsewhere, with the object that the URL resolved
/// to beside it.
class KESTAN_EXPORT ObjUrlFieldBase : public StrField {
public:
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  /// The clone may live under another base URL, so that its reference is made absolute.
  void clone(SchemaObject& dst, const SchemaObject& src, bool deep) const override;

  /// What the URL has led to, or null.
  virtual SchemaObject* GetTarget(const SchemaObject& object) const = 0;

protected:
  ObjUrlFieldBase(Schema& schema, const QString& name, unsigned offset, Field::Type type,
                  unsigned flags);
};

/// A reference to a `T`. The target lies in a member that answers it by `get()`.
template <class T, class Target = RefPtr<T>>
class KESTAN_EXPORT ObjUrlField final : public ObjUrlFieldBase {
public:
  ObjUrlField(Schema& schema, const QString& name, unsigned offset, Field::Type type,
              unsigned flags, unsigned targetOffset);

  SchemaObject* GetTarget(const SchemaObject& object) const override;

private:
  unsigned targetOffset_;
};

} // namespace vorrel::kestan
