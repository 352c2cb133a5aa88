#pragma once

#include "kestan/core/field.h"

namespace vorrel::kestan {

/// A member that holds child objects: one, or an array of them.
///
/// A child stands in one place at a time. One that comes into a field leaves every other, also of
/// the same owner, and no object comes to stand below itself. A field with `kNoWrite` refers to its
/// object: it neither takes nor gives ownership. So does any field of an object that is dying.
class KESTAN_EXPORT ChildField : public Field {
public:
  const Schema* GetObjSchema() const override { return objSchema_; }

  /// Whether `child` may come into this field of `owner`: it's of the class, isn't dying, and
  /// `owner` isn't it, nor below it.
  bool Accepts(const SchemaObject& owner, const SchemaObject& child) const;
  /// Drops the child at `index` without a word to anybody.
  virtual void TakeOut(SchemaObject& owner, int index) const = 0;

protected:
  ChildField(Schema& schema, const QString& name, const Schema& objSchema, unsigned offset,
             unsigned flags, unsigned size, unsigned align);

  /// Whether this field of `owner` owns what it holds.
  bool Owns(const SchemaObject& owner) const;

private:
  const Schema* objSchema_;
};

} // namespace vorrel::kestan
