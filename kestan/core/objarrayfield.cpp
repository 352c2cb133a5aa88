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

void ObjArrayFieldBase::Renumber(const SchemaObject& owner, int from, int end) const {
  for (int i = from; i < end; ++i) {
    if (SchemaObject* element = GetObject(owner, i))
      element->SetArrayIndex(i);
  }
}

int ObjArrayFieldBase::FindObject(const SchemaObject& owner, const SchemaObject& child) const {
  const int index = child.GetArrayIndex();
  return child.HasOwner(owner) && GetObject(owner, index) == &child ? index : -1;
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
  if (former)
    former->RemArrayOwner(owner, index);
  if (index >= getCount(owner))
    setCount(owner, static_cast<unsigned>(index) + 1);
  const int from = FindObject(owner, *child);
  Store(owner, index, child);
  if (from >= 0) {
    // The child stood elsewhere in this array: that place closes.
    child->RemArrayOwner(owner, from);
    const int last = getCount(owner) - 1;
    Move(owner, from, last);
    setCount(owner, static_cast<unsigned>(last));
    Renumber(owner, from, last);
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
  const int first = *places.begin();
  int to = first;
  auto erased = places.begin();
  for (int from = first; from < count; ++from) {
    if (erased != end && from == *erased)
      ++erased;
    else
      Store(*owner, to++, GetObject(*owner, from));
  }
  setCount(*owner, static_cast<unsigned>(to));
  Renumber(*owner, first, to);
  for (const auto& [element, place] : gone)
    element->RemArrayOwner(*owner, place);
  return count - to;
}

bool ObjArrayFieldBase::remove(SchemaObject& owner, SchemaObject* child) const {
  if (!child || child == &owner || !child->HasOwner(owner))
    return false;
  return remove(owner, child->GetArrayIndex());
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
    if (child && child.get() != owner && child->HasOwner(*owner))
      places.push_back(child->GetArrayIndex());
  }
  const int erased =
      EraseMultiple(owner, ArraySlice<const int>(places.begin(), places.size()));
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
    if (!child || !Accepts(*owner, *child) || child->HasOwner(*owner))
      continue;
    Append(*owner, child.get());
    child->AddArrayOwner(*owner, getCount(*owner) - 1);
    ++added;
  }
  if (added > 0)
    NotifyFieldChanged(*owner);
  return added;
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
    SchemaObject* source = GetObject(src, deep ? i : 0);
    SchemaObject* present = GetObject(dst, i);
    if (!deep)
      set(dst, source, i); // leaves its former array, so that the next one moves to the front
    else if (source && present && &source->GetSchema() == &present->GetSchema())
      present->copy(*source, true, nullptr);
    else if (source)
      set(dst, CloneObject(*source, true, nullptr).get(), i);
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
