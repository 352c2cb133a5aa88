#include "kestan/core/objfield.h"

#include "kestan/core/childmove.h"
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
    : ChildField(schema, name, objSchema, offset, flags, size, align) {}

bool ObjFieldBase::set(SchemaObject& owner, SchemaObject* child, int) const {
  const DeletionDeferrer deferrer;
  if (child == GetObject(owner, -1)) {
    owner.DropKeptValues(*this);
    return true;
  }
  if (!Replace(owner, child))
    return false;
  NotifyFieldChanged(owner);
  return true;
}

bool ObjFieldBase::Replace(SchemaObject& owner, SchemaObject* child) const {
  if (child && !Accepts(owner, *child))
    return false;
  RefPtr<SchemaObject> former(GetObject(owner, -1));
  if (child == former.get())
    return true;
  if (!Owns(owner)) {
    Store(owner, child);
    return true;
  }
  if (child && !former && !child->GetHome()) {
    Store(owner, child);
    ChildMove::Settle(*child, owner, -1);
    return true;
  }
  ChildMove move;
  if (child)
    move.Take(*child);
  Store(owner, child);
  if (former)
    move.LetGo(std::move(former), owner);
  if (child)
    ChildMove::Enter(*child, owner, -1);
  move.Tell();
  return true;
}

void ObjFieldBase::TakeOut(SchemaObject& owner, int) const { Store(owner, nullptr); }

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
  SchemaObject* child = GetObject(src, -1);
  if (HasFlag(kNoWrite))
    set(dst, child, 0);
  else if (deep)
    set(dst, child ? CloneInto(dst, *child).get() : nullptr, 0);
}

void ObjFieldBase::copy(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  const DeletionDeferrer deferrer;
  SchemaObject* source = GetObject(src, -1);
  SchemaObject* present = GetObject(dst, -1);
  if (!deep || HasFlag(kNoWrite))
    set(dst, source, 0);
  else if (source && present && &source->GetSchema() == &present->GetSchema())
    present->copy(*source, true, nullptr);
  else if (source || present)
    set(dst, source ? CloneObject(*source, true, nullptr).get() : nullptr, 0);
}

void ObjFieldBase::merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                         bool useB) const {
  const DeletionDeferrer deferrer;
  SchemaObject* x = GetObject(a, -1);
  SchemaObject* y = GetObject(b, -1);
  SchemaObject* present = GetObject(dst, -1);
  SchemaObject* source = y && useB ? y : x;
  if (HasFlag(kNoWrite)) {
    set(dst, source, -1);
    return;
  }
  // Where only one side has the child, it stands for both: it's taken over as it is.
  const SchemaObject* below = x ? x : y;
  const SchemaObject* above = y ? y : x;
  const auto isAlike = [&](const SchemaObject* object) {
    return &object->GetSchema() == &present->GetSchema();
  };
  if (present && below && isAlike(below) && isAlike(above)) {
    present->merge(*below, *above);
    return;
  }
  if (present && !source)
    source = y;
  if (source && source != present)
    set(dst, CloneObject(*source, true, nullptr).get(), -1);
}

} // namespace vorrel::kestan
