#pragma once

#include "kestan/core/childfield.h"
#include "kestan/host/refptr.h"

namespace vorrel::kestan {

/// A clone of `child`; its creation notices wait until it's whole.
KESTAN_EXPORT RefPtr<SchemaObject> CloneObject(const SchemaObject& child, bool deep,
                                               const mmvector<const Field*>* excluded);
/// A deep clone of `child` for the document of `dst`.
KESTAN_EXPORT RefPtr<SchemaObject> CloneInto(const SchemaObject& dst, const SchemaObject& child);

/// What holds for a member with one child object, whatever its class.
class KESTAN_EXPORT ObjFieldBase : public ChildField {
public:
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void clone(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
             bool useB) const override;
  bool equals(const SchemaObject& a, const SchemaObject& b) const override;
  int compare(const SchemaObject& a, const SchemaObject& b) const override;
  QString toString(const SchemaObject& object, int index) const override;
  bool set(SchemaObject& owner, SchemaObject* child, int index) const override;
  bool insert(SchemaObject& owner, SchemaObject* child, int index) const override;
  /// The same as `set`, but the owner sends no notice.
  bool Replace(SchemaObject& owner, SchemaObject* child) const;
  void TakeOut(SchemaObject& owner, int index) const override;

protected:
  ObjFieldBase(Schema& schema, const QString& name, const Schema& objSchema, unsigned offset,
               unsigned flags, unsigned size, unsigned align);

  /// Puts a child of the right class, or null, into the member.
  virtual void Store(SchemaObject& owner, SchemaObject* child) const = 0;
};

/// A member `RefPtr<T>` that owns its object.
template <class T> class KESTAN_EXPORT ObjField : public ObjFieldBase {
public:
  ObjField(Schema& schema, const QString& name, const Schema& objSchema, unsigned offset,
           unsigned flags = 0);

  unsigned getSize() const override;
  unsigned GetAlign() const override;
  void construct(SchemaObject& object) const override;
  void destruct(SchemaObject& object) const override;
  SchemaObject* GetObject(const SchemaObject& object, int index) const override;

  RefPtr<T> get(const SchemaObject& object) const;
  void SetTypedObject(SchemaObject& owner, const RefPtr<T>& child) const;
  /// The setter of client calls: the present child changes nothing.
  void CheckSet(SchemaObject& owner, T* child) const;

protected:
  void Store(SchemaObject& owner, SchemaObject* child) const override;
};

} // namespace vorrel::kestan
