#include "kestan/core/objarrayfield.h"

#include "kestan/core/objfield.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/inlinedvector.h"

#include <algorithm>
#include <utility>

namespace vorrel::kestan {

ObjArrayFieldBase::ObjArrayFieldBase(Schema& schema, const QString& name, const Schema& objSchema,
                                     unsigned offset, unsigned flags, unsigned size, unsigned align)
    : Field(schema, name, offset, kObject, GetNamespaceFlags(objSchema, flags), size, align,
            &objSchema),
      objSchema_(&objSchema) {}

bool ObjArrayFieldBase::Accepts(const SchemaObject& owner, const SchemaObject& child) const {
  return &child != &owner && child.isOfType(*objSchema_);
}

int ObjArrayFieldBase::FindObject(const SchemaObject& owner, const SchemaObject& child) const {
  if (!child.HasOwner(owner) || !child.isOfType(*objSchema_))
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

bool ObjArrayFieldBase::insert(SchemaObject& owner, SchemaObject* child, int index) const {
  if (!child)
    return remove(owner, index);
  if (!Accepts(owner, *child))
    return false;
  const int count = getCount(owner);
  const int from = FindObject(owner, *child);
  if (index < 0 || index > count) {
    if (from >= 0)
      return false;
    Append(owner, child);
    child->AddArrayOwner(owner, count);
  } else if (from >= 0) {
    const int to = std::min(index, count - 1);
    if (from == to)
      return true;
    Move(owner, from, to);
    Renumber(owner, std::min(from, to), std::max(from, to) + 1);
  } else {
    Append(owner, child);
    Move(owner, count, index);
    Renumber(owner, index + 1, count + 1);
    child->AddArrayOwner(owner, index);
  }
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

  const RefPtr<SchemaObject> kept(child);
  const RefPtr<SchemaObject> former(GetObject(owner, index));
  if (index >= getCount(owner))
    setCount(owner, static_cast<unsigned>(index) + 1);
  const int from = FindObject(owner, *child);
  Store(owner, index, child);
  if (former)
    former->RemArrayOwner(owner, index);
  if (from >= 0) {
    // The child stood elsewhere in this array: that place closes.
    child->RemArrayOwner(owner, from);
    Erase(owner, {&from, 1});
    Renumber(owner, from, getCount(owner));
    if (from < index)
      --index;
  }
  child->AddArrayOwner(owner, index);
  NotifyFieldChanged(owner);
  return true;
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

  // The array is whole again before any element hears of it, since what it does then may change
  // the array once more.
  mmvector<std::pair<RefPtr<SchemaObject>, int>> gone;
  for (auto place = places.begin(); place != end; ++place) {
    if (SchemaObject* element = GetObject(*owner, *place))
      gone.emplace_back(element, *place);
  }
  const auto erased = static_cast<std::size_t>(end - places.begin());
  Erase(*owner, {places.begin(), erased});
  Renumber(*owner, places[0], getCount(*owner));
  for (const auto& [element, place] : gone)
    element->RemArrayOwner(*owner, place);
  return static_cast<int>(erased);
}

bool ObjArrayFieldBase::remove(SchemaObject& owner, SchemaObject* child) const {
  return child && remove(owner, FindObject(owner, *child));
}

bool ObjArrayFieldBase::remove(SchemaObject& owner, int index) const {
  if (EraseMultiple(&owner, ArraySlice<const int>(&index, 1)) == 0)
    return false;
  NotifyFieldChanged(owner);
  return true;
}

int ObjArrayFieldBase::RemoveMultiple(SchemaObject* owner,
                                      const ArraySlice<RefPtr<SchemaObject>>& children) const {
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
  int added = 0;
  for (const RefPtr<SchemaObject>& child : children) {
    if (!child || !Accepts(*owner, *child) || FindObject(*owner, *child) >= 0)
      continue;
    Append(*owner, child.get());
    child->AddArrayOwner(*owner, getCount(*owner) - 1);
    ++added;
  }
  if (added > 0)
    NotifyFieldChanged(*owner);
  return added;
}

void ObjArrayFieldBase::reverse(SchemaObject& owner) const {
  Reverse(owner);
  Renumber(owner, 0, getCount(owner));
  NotifyFieldChanged(owner);
}

void ObjArrayFieldBase::clone(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  if (!deep)
    return;
  const int count = getCount(src);
  setCount(dst, static_cast<unsigned>(count));
  for (int i = 0; i < count; ++i) {
    if (const SchemaObject* child = GetObject(src, i))
      set(dst, CloneInto(dst, *child).get(), i);
  }
}

void ObjArrayFieldBase::copy(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  const int count = getCount(src);
  for (int i = 0; i < count; ++i) {
    // A child that moves leaves its former array: those go from the end.
    const int place = deep ? i : count - 1 - i;
    SchemaObject* source = GetObject(src, place);
    SchemaObject* present = GetObject(dst, place);
    if (!deep)
      set(dst, source, place);
    else if (source && present && &source->GetSchema() == &present->GetSchema())
      present->copy(*source, true, nullptr);
    else if (source)
      set(dst, CloneObject(*source, true, nullptr).get(), place);
  }
  while (getCount(dst) > count)
    remove(dst, getCount(dst) - 1);
}

void ObjArrayFieldBase::merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                              bool useB) const {
  const SchemaObject& source = useB ? b : a;
  if (&dst == &source)
    return;
  mmvector<int> all(static_cast<std::size_t>(getCount(dst)));
  for (std::size_t i = 0; i < all.size(); ++i)
    all[i] = static_cast<int>(i);
  EraseMultiple(&dst, ArraySlice<const int>(all.data(), all.size()));
  int place = 0;
  for (int i = 0, count = getCount(source); i < count; ++i) {
    if (const SchemaObject* child = GetObject(source, i))
      set(dst, CloneObject(*child, true, nullptr).get(), place++);
  }
}

} // namespace vorrel::kestan
