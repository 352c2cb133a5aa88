#include "kestan/core/objfield.h"

#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"

#include <functional>

namespace vorrel::kestan {

RefPtr<SchemaObject> CloneObject(const SchemaObject& child, bool deep,
                                 const mmvector<const Field*>* excluded) {
  const NotificationDeferrer deferrer;
  return child.clone(deep, excluded);
}

RefPtr<SchemaObject> CloneInto(const SchemaObject& dst, const SchemaObject& child) {
  const NotificationDeferrer deferrer;
  return child.clone(KmlId(child.GetId(), dst.GetUrl()), true, nullptr);
}

ObjFieldBase::ObjFieldBase(Schema& schema, const QString& name, const Schema& objSchema,
                           unsigned offset, unsigned flags, unsigned size, unsigned align)
    : Field(schema, name, offset, kObject, GetNamespaceFlags(objSchema, flags), size, align,
            &objSchema),
      objSchema_(&objSchema) {}

bool ObjFieldBase::Accepts(const SchemaObject& owner, const SchemaObject& child) const {
  return &child != &owner && child.isOfType(*objSchema_);
}

bool ObjFieldBase::set(SchemaObject& owner, SchemaObject* child, int) const {
  if (child && !Accepts(owner, *child))
    return false;
  const RefPtr<SchemaObject> former(GetObject(owner, -1));
  if (child == former.get())
    return true;
  Store(owner, child);
  if (former)
    former->RemOwner(owner);
  if (child)
    child->AddOwner(owner);
  NotifyFieldChanged(owner);
  return true;
}

bool ObjFieldBase::insert(SchemaObject& owner, SchemaObject* child, int index) const {
  return set(owner, child, index);
}

bool ObjFieldBase::equals(const SchemaObject& a, const SchemaObject& b) const {
  return GetObject(a, -1) == GetObject(b, -1);
}

int ObjFieldBase::compare(const SchemaObject& a, const SchemaObject& b) const {
  const SchemaObject* x = GetObject(a, -1);
  const SchemaObject* y = GetObject(b, -1);
  return x == y ? 0 : std::less<>()(y, x) ? 1 : -1;
}

QString ObjFieldBase::toString(const SchemaObject& object, int) const {
  const SchemaObject* child = GetObject(object, -1);
  return child ? child->toString() : QString();
}

void ObjFieldBase::clone(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  if (!deep)
    return;
  const SchemaObject* child = GetObject(src, -1);
  set(dst, child ? CloneInto(dst, *child).get() : nullptr, 0);
}

void ObjFieldBase::copy(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  SchemaObject* source = GetObject(src, -1);
  SchemaObject* present = GetObject(dst, -1);
  if (!deep)
    set(dst, source, 0);
  else if (source && present && &source->GetSchema() == &present->GetSchema())
    present->copy(*source, true, nullptr);
  else if (source || present)
    set(dst, source ? CloneObject(*source, true, nullptr).get() : nullptr, 0);
}

void ObjFieldBase::merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                         bool useB) const {
  SchemaObject* x = GetObject(a, -1);
  SchemaObject* y = GetObject(b, -1);
  SchemaObject* present = GetObject(dst, -1);
  if (!present) {
    SchemaObject* source = y && useB ? y : x;
    if (source)
      set(dst, CloneObject(*source, true, nullptr).get(), -1);
  } else if (x || y) {
    // Where only one side has the child, it stands for both: it's taken over as it is.
    present->merge(x ? *x : *y, y ? *y : *x);
  }
}

} // namespace vorrel::kestan
