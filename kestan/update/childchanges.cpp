#include "kestan/update/childchanges.h"

#include "kestan/core/objarrayfield.h"
#include "kestan/feature/abstractfolder.h" // features come and go

#include <utility>

namespace vorrel::kestan {

namespace {

/// The field as one of an array of children; null for any other.
const ObjArrayFieldBase* AsArray(const Field* field) {
  return field && field->IsArray() && field->GetType() == Field::kObject
             ? static_cast<const ObjArrayFieldBase*>(field)
             : nullptr;
}

bool IsFolder(const SchemaObject* object) {
  return object && object->isOfType(AbstractFolder::GetClassSchema());
}

} // namespace

ChildChanges::Array::Array(SchemaObject& object, const ObjArrayFieldBase& arrayField)
    : owner(&object), field(arrayField), order(arrayField.getCount(object)) {}

ChildChanges::Array* ChildChanges::Find(const SchemaObject& owner, const Field& field) const {
  if (arrays_.empty())
    return nullptr;
  const auto place = places_.find({&owner, &field});
  return place == places_.end() ? nullptr : place->second;
}

ChildChanges::Array& ChildChanges::Require(SchemaObject& owner, const ObjArrayFieldBase& field) {
  Array*& array = places_[{&owner, &field}];
  if (!array) {
    arrays_.push_back(std::make_unique<Array>(owner, field));
    array = arrays_.back().get();
  }
  return *array;
}

ChildChanges::Array* ChildChanges::FindTarget(const SchemaObject& child) const {
  if (coming_.empty())
    return nullptr;
  const auto place = coming_.find(&child);
  return place == coming_.end() ? nullptr : place->second;
}

SchemaObject* ChildChanges::GetHome(const SchemaObject& child) const {
  const Array* const target = FindTarget(child);
  return target ? target->owner.get() : child.GetHome();
}

template <class Visit>
bool ChildChanges::AnyUpwards(const SchemaObject& object, Visit visit) const {
  std::size_t left = coming_.size(); // each can lead up once
  for (const SchemaObject* at = &object; at;) {
    if (visit(*at))
      return true;
    const Array* const target = FindTarget(*at);
    if (target && left-- == 0)
      return false;
    at = target ? target->owner.get() : at->GetHome();
  }
  return false;
}

bool ChildChanges::Insert(SchemaObject& owner, const Field& field, SchemaObject& child, int place) {
  const RefPtr<SchemaObject> kept(&child);
  if (!coming_.empty() && AnyUpwards(owner, [&](const SchemaObject& at) { return &at == &child; }))
    return false;
  const ObjArrayFieldBase* const array =
      &field.GetPlaceFor(child) == &field ? AsArray(&field) : nullptr;
  const bool isNew = !GetHome(child);
  const bool isBehind = place < 0 || (array && place >= array->getCount(owner));
  if (!array || (isNew && isBehind && !Find(owner, field))) {
    if (FindTarget(child))
      Leave(child);
    return field.insert(owner, &child, place);
  }
  if (!array->Accepts(owner, child))
    return false;
  if (!isNew && !Leave(child))
    return field.insert(owner, &child, place);
  Array& target = Require(owner, *array);
  target.order.Insert(place, child);
  coming_[&child] = &target;
  return true;
}

bool ChildChanges::Leave(SchemaObject& child) {
  if (Array* const target = FindTarget(child)) {
    coming_.erase(&child);
    target->order.Remove(child);
    return true;
  }
  SchemaObject* const home = child.GetHome();
  int element = -1;
  const ObjArrayFieldBase* const field =
      AsArray(home ? home->FindObject(child, &element) : nullptr);
  if (!field)
    return false;
  Array& array = Require(*home, *field);
  array.order.Remove(element);
  array.leaving.emplace_back(&child);
  return true;
}

void ChildChanges::Remove(AbstractFeature& feature) {
  if (!IsFolder(GetHome(feature)))
    return;
  kept_.emplace_back(&feature);
  if (Leave(feature))
    removed_.insert(&feature);
}

bool ChildChanges::Replace(AbstractFeature& feature, SchemaObject& other) {
  if (Array* const target = FindTarget(feature)) {
    kept_.emplace_back(&feature);
    removed_.insert(&feature);
    coming_.erase(&feature);
    coming_[&other] = target;
    target->order.Replace(feature, other);
    return true;
  }
  const RefPtr<SchemaObject> folder(feature.GetHome());
  if (!IsFolder(folder.get()))
    return false;
  int element = -1;
  if (const Field* const children = folder->FindObject(feature, &element))
    children->set(*folder, &other, element);
  return true;
}

bool ChildChanges::IsRemoved(const SchemaObject& object) const {
  if (kept_.empty())
    return false;
  return AnyUpwards(object, [this](const SchemaObject& at) { return removed_.contains(&at); });
}

int ChildChanges::FindPlace(const AbstractFeature& feature) const {
  if (const Array* const target = FindTarget(feature))
    return target->order.FindPlace(feature);
  const SchemaObject* const folder = feature.GetHome();
  if (!IsFolder(folder))
    return -1;
  int element = -1;
  const Field* const field = folder->FindObject(feature, &element);
  const Array* const array = field ? Find(*folder, *field) : nullptr;
  return array ? array->order.FindPlace(element) : element;
}

void ChildChanges::Finish() {
  const mmvector<std::unique_ptr<Array>> arrays = std::exchange(arrays_, {});
  places_.clear();
  coming_.clear();
  removed_ = {};
  for (const std::unique_ptr<Array>& array : arrays)
    Take(*array);
  for (const std::unique_ptr<Array>& array : arrays) {
    mmvector<ObjArrayFieldBase::Insertion> insertions;
    array->order.ForEachNew([&](SchemaObject& child, int before) {
      insertions.push_back({RefPtr<SchemaObject>(&child), before});
    });
    if (!insertions.empty())
      array->field.InsertMultiple(array->owner.get(), insertions);
  }
  kept_.clear();
}

void ChildChanges::Take(Array& array) {
  if (array.leaving.empty())
    return;
  if (!IsFolder(array.owner.get()) ||
      !array.leaving.front()->isOfType(AbstractFeature::GetClassSchema())) {
    array.field.RemoveMultiple(array.owner.get(), array.leaving);
    return;
  }
  mmvector<RefPtr<AbstractFeature>> features;
  features.reserve(array.leaving.size());
  for (const RefPtr<SchemaObject>& child : array.leaving)
    features.emplace_back(static_cast<AbstractFeature*>(child.get()));
  array.leaving.clear();
  static_cast<AbstractFolder&>(*array.owner).RemoveChildren(features);
}

} // namespace vorrel::kestan
