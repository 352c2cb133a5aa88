#include "kestan/core/objarrayfield.h"

#include "kestan/core/childmove.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/inlinedvector.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace vorrel::kestan {

ObjArrayFieldBase::ObjArrayFieldBase(Schema& schema, const QString& name, const Schema& objSchema,
                                     unsigned offset, unsigned flags, unsigned size, unsigned align)
    : ChildField(schema, name, objSchema, offset, flags, size, align) {}

int ObjArrayFieldBase::FindObject(const SchemaObject& owner, const SchemaObject& child) const {
  if (!child.HasOwner(owner) || !child.isOfType(*GetObjSchema()))
    return -1;
  if (GetObject(owner, child.GetArrayIndex()) == &child)
    return child.GetArrayIndex();
  // A shared style has several owners, and knows its place in one of them at most.
  for (int i = 0, count = getCount(owner); i < count; ++i) {
    if (GetObject(owner, i) == &child)
      return i;
  }
  return -1;
}

QString ObjArrayFieldBase::toString(const SchemaObject& object, int index) const {
  const SchemaObject* child = GetObject(object, index);
  return child ? child->toString() : QString();
}

/// Puts `child`, which isn't in this array, between the others.
void ObjArrayFieldBase::Place(ChildMove& move, SchemaObject& owner, SchemaObject& child,
                              int index) const {
  const int count = getCount(owner);
  if (Owns(owner))
    move.Take(child);
  Append(owner, &child);
  if (index < count) {
    Move(owner, count, index);
    Renumbered(owner, index + 1, count + 1);
  }
  if (Owns(owner))
    ChildMove::Enter(child, owner, index);
}

bool ObjArrayFieldBase::insert(SchemaObject& owner, SchemaObject* child, int index) const {
  if (!child)
    return remove(owner, index);
  if (!Accepts(owner, *child))
    return false;
  const int count = getCount(owner);
  if ((index < 0 || index >= count) && !child->GetHome() && Owns(owner)) {
    const DeletionDeferrer deferrer;
    Append(owner, child);
    ChildMove::Settle(*child, owner, count);
    NotifyFieldChanged(owner);
    return true;
  }
  ChildMove move;
  const int from = FindObject(owner, *child);
  if (index < 0 || index > count) {
    if (from >= 0)
      return false;
    Place(move, owner, *child, count);
  } else if (from >= 0) {
    const int to = std::min(index, count - 1);
    if (from == to)
      return true;
    Move(owner, from, to);
    Renumbered(owner, std::min(from, to), std::max(from, to) + 1);
  } else {
    Place(move, owner, *child, index);
  }
  move.Tell();
  NotifyFieldChanged(owner);
  return true;
}

bool ObjArrayFieldBase::set(SchemaObject& owner, SchemaObject* child, int index) const {
  if (!child)
    return remove(owner, index);
  if (!Accepts(owner, *child))
    return false;
  if (index < 0)
    index = getCount(owner);
  if (GetObject(owner, index) == child)
    return true;

  ChildMove move;
  const int from = FindObject(owner, *child);
  if (Owns(owner) && from < 0)
    move.Take(*child);
  if (index >= getCount(owner))
    Grow(owner, static_cast<std::size_t>(index) + 1);
  RefPtr<SchemaObject> former(GetObject(owner, index));
  Store(owner, index, child);
  if (from >= 0) {
    // The child stood elsewhere in this array: that place closes.
    Erase(owner, {&from, 1});
    Renumbered(owner, from, getCount(owner));
    if (from < index)
      --index;
  }
  if (former)
    move.LetGo(std::move(former), owner);
  if (Owns(owner))
    ChildMove::Enter(*child, owner, index);
  move.Tell();
  NotifyFieldChanged(owner);
  return true;
}

void ObjArrayFieldBase::setCount(SchemaObject& object, unsigned count) const {
  const auto present = static_cast<unsigned>(getCount(object));
  if (count >= present) {
    Grow(object, count);
    return;
  }
  mmvector<int> places(present - count);
  std::iota(places.begin(), places.end(), static_cast<int>(count));
  EraseMultiple(&object, places);
}

void ObjArrayFieldBase::TakeOut(SchemaObject& owner, int index) const {
  Erase(owner, {&index, 1});
  Renumbered(owner, index, getCount(owner));
}

/// Only an owner says where its children stand.
void ObjArrayFieldBase::Renumbered(const SchemaObject& owner, int from, int end) const {
  if (Owns(owner))
    Renumber(owner, from, end);
}

int ObjArrayFieldBase::EraseMultiple(SchemaObject* owner,
                                     const ArraySlice<const int>& indices) const {
  const int count = getCount(*owner);
  InlinedVector<int, 64> places;
  for (const int index : indices) {
    if (index >= 0 && index < count)
      places.push_back(index);
  }
  if (places.size() == 0)
    return 0;
  std::sort(places.begin(), places.end());
  const auto end = std::unique(places.begin(), places.end());

  ChildMove move;
  for (auto place = places.begin(); place != end; ++place) {
    if (SchemaObject* const element = GetObject(*owner, *place))
      move.LetGo(RefPtr<SchemaObject>(element), *owner);
  }
  const auto erased = static_cast<std::size_t>(end - places.begin());
  Erase(*owner, {places.begin(), erased});
  Renumbered(*owner, places[0], getCount(*owner));
  move.Tell();
  return static_cast<int>(erased);
}

bool ObjArrayFieldBase::remove(SchemaObject& owner, SchemaObject* child) const {
  return child && remove(owner, FindObject(owner, *child));
}

bool ObjArrayFieldBase::remove(SchemaObject& owner, int index) const {
  const DeletionDeferrer deferrer;
  if (EraseMultiple(&owner, ArraySlice<const int>(&index, 1)) == 0)
    return false;
  NotifyFieldChanged(owner);
  return true;
}

int ObjArrayFieldBase::RemoveMultiple(SchemaObject* owner,
                                      const ArraySlice<RefPtr<SchemaObject>>& children) const {
  const DeletionDeferrer deferrer;
  InlinedVector<int, 64> places;
  for (const RefPtr<SchemaObject>& child : children) {
    if (child)
      places.push_back(FindObject(*owner, *child)); // -1 is passed over
  }
  const int erased = EraseMultiple(owner, ArraySlice<const int>(places.begin(), places.size()));
  if (erased > 0)
    NotifyFieldChanged(*owner);
  return erased;
}

bool ObjArrayFieldBase::add(SchemaObject& owner, SchemaObject* child) const {
  RefPtr<SchemaObject> entry(child);
  return AddMultiple(&owner, ArraySlice<RefPtr<SchemaObject>>(&entry, 1)) == 1;
}

int ObjArrayFieldBase::AddMultiple(SchemaObject* owner,
                                   const ArraySlice<RefPtr<SchemaObject>>& children) const {
  ChildMove move;
  int added = 0;
  for (const RefPtr<SchemaObject>& child : children) {
    if (!child || !Accepts(*owner, *child) || FindObject(*owner, *child) >= 0)
      continue;
    Place(move, *owner, *child, getCount(*owner));
    ++added;
  }
  move.Tell();
  if (added > 0)
    NotifyFieldChanged(*owner);
  return added;
}

int ObjArrayFieldBase::InsertMultiple(SchemaObject* owner,
                                      const ArraySlice<Insertion>& insertions) const {
  ChildMove move;
  const int present = getCount(*owner);
  int count = present;
  mmvector<int> order;
  order.reserve(static_cast<std::size_t>(present) + insertions.size());
  const auto addElements = [&](int end) {
    for (int next = static_cast<int>(order.size()) - (count - present); next < end; ++next)
      order.push_back(next);
  };
  for (const Insertion& insertion : insertions) {
    SchemaObject* const child = insertion.child.get();
    if (!child || !Accepts(*owner, *child) || FindObject(*owner, *child) >= 0)
      continue;
    addElements(std::min(insertion.index, present));
    Place(move, *owner, *child, count);
    order.push_back(count++);
  }
  if (count == present)
    return 0;
  addElements(present);
  Arrange(*owner, order);
  Renumbered(*owner, 0, count);
  move.Tell();
  NotifyFieldChanged(*owner);
  return count - present;
}

void ObjArrayFieldBase::reverse(SchemaObject& owner) const {
  Reverse(owner);
  Renumbered(owner, 0, getCount(owner));
  NotifyFieldChanged(owner);
}

void ObjArrayFieldBase::clone(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  const DeletionDeferrer deferrer;
  if (HasFlag(kNoWrite))
    copy(dst, src, false);
  if (!deep || HasFlag(kNoWrite))
    return;
  const int count = getCount(src);
  setCount(dst, static_cast<unsigned>(count));
  for (int i = 0; i < count; ++i) {
    if (const SchemaObject* child = GetObject(src, i))
      set(dst, CloneInto(dst, *child).get(), i);
  }
}

void ObjArrayFieldBase::copy(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  const DeletionDeferrer deferrer;
  const bool moves = !deep || HasFlag(kNoWrite);
  const int count = getCount(src);
  for (int i = 0; i < count; ++i) {
    // A child that moves leaves its former array: those go from the end.
    const int place = moves ? count - 1 - i : i;
    SchemaObject* source = GetObject(src, place);
    SchemaObject* present = GetObject(dst, place);
    if (moves)
      set(dst, source, place);
    else if (source && present && &source->GetSchema() == &present->GetSchema())
      present->copy(*source, true, nullptr);
    else if (source)
      set(dst, CloneObject(*source, true, nullptr).get(), place);
  }
  mmvector<int> rest;
  for (int i = count; i < getCount(dst); ++i)
    rest.push_back(i);
  if (EraseMultiple(&dst, rest) > 0)
    NotifyFieldChanged(dst);
}

void ObjArrayFieldBase::merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                              bool useB) const {
  const SchemaObject& source = useB ? b : a;
  if (&dst == &source)
    return;
  const DeletionDeferrer deferrer;
  setCount(dst, 0);
  int place = 0;
  for (int i = 0, count = getCount(source); i < count; ++i) {
    if (const SchemaObject* child = GetObject(source, i))
      set(dst, CloneObject(*child, true, nullptr).get(), place++);
  }
}

} // namespace vorrel::kestan
