#include "kestan/core/kmlid.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/custom/customschema.h" // schemas are hoisted apart from styles
#include "kestan/host/url.h"
#include "kestan/style/styleselector.h" // the other kind of what is hoisted
#include "kestan/write/writestate.h"

#include <algorithm>

namespace vorrel::kestan {

void WriteState::PushStylesAndSchemas() {
  styleSets_.push_back(std::make_unique<ObjectSet>());
  schemaSets_.push_back(std::make_unique<ObjectSet>());
}

void WriteState::PopStylesAndSchemas() {
  styleSets_.pop_back();
  schemaSets_.pop_back();
}

bool WriteState::HasStylesOrSchemas() const {
  return !styleSets_.back()->empty() || !schemaSets_.back()->empty();
}

bool WriteState::AddStyle(const StyleSelector& style) { return Hoist(style, styleSets_); }

bool WriteState::HasStyle(const StyleSelector& style) const { return Contains(styleSets_, style); }

bool WriteState::AddSchema(const CustomSchema& schema) { return Hoist(schema, schemaSets_); }

bool WriteState::Contains(const ObjectSets& sets, const SchemaObject& object) {
  return std::any_of(sets.begin(), sets.end(),
                     [&](const auto& set) { return set->contains(object); });
}

bool WriteState::Hoist(const SchemaObject& object, const ObjectSets& sets) {
  const QString& url = object.GetUrl();
  const UrlType type = GGetUrlType(url);
  const bool isNameless = object.GetId().isEmpty() || type == kUrlRuntime;
  if (isNameless)
    nameless_.insert(object);
  const bool isOnServer = type == kUrlNetwork && !isNameless && url != rootUrl_;
  if (sets.empty() || innerDocuments_ > 0 || isOnServer || Contains(sets, object) ||
      leftStyles_.contains(&object))
    return false;
  return sets.back()->insert(object);
}

void WriteState::AddOwnStyles(const mmvector<RefPtr<StyleSelector>>& styles) {
  for (const RefPtr<StyleSelector>& style : styles) {
    if (!style)
      continue;
    leftStyles_.remove(style.get());
    styleSets_.back()->insert(*style);
  }
}

void WriteState::LeaveStyle(const StyleSelector& style, bool mayBeRenamed) {
  bool& isRenamable = leftStyles_[&style];
  isRenamable = isRenamable || mayBeRenamed;
  if (!style.GetId().isEmpty()) {
    const auto other = leftStylesById_.find(style.GetId());
    if (other == leftStylesById_.end())
      leftStylesById_.insert(style.GetId(), &style);
    else if (*other != &style)
      *other = nullptr;
  }
  if (!styleSets_.empty())
    styleSets_.back()->erase(style); // something in front of it refers to it
}

void WriteState::AssignStyleIds() {
  AssignIds(*styleSets_.back()); // they keep theirs before others get new ones
  nameless_.ForEach([this](const SchemaObject& style) {
    const auto left = leftStyles_.find(&style);
    if (left == leftStyles_.end() || *left)
      return;
    *left = true;
    AssignId(style);
  });
  nameless_ = ObjectSet(); // what stays has been hoisted, or isn't written at all
}

void WriteState::WriteStyles() {
  styleDefaultsEnabled_ = false;
  WriteObjs(*styleSets_.back());
  styleDefaultsEnabled_ = true;
}

void WriteState::WriteSchemas() { WriteObjs(*schemaSets_.back()); }

void WriteState::WriteObjs(const ObjectSet& objects) {
  AssignIds(objects);
  objects.ForEach([this](const SchemaObject& object) { object.WriteKml(*this); });
}

void WriteState::AssignIds(const ObjectSet& objects) {
  objects.ForEach([this](const SchemaObject& object) { AssignId(object); });
}

QString WriteState::AssignId(const SchemaObject& object) {
  const auto known = idsByObject_.constFind(&object);
  if (known != idsByObject_.constEnd())
    return *known;
  QString id = object.GetId();
  namesNameless_ |= id.isEmpty(); // and yet something refers to it
  if (id.isEmpty() || IsTaken(id, object))
    id = GenerateUniqueId(id.isEmpty() ? object.getType() : id);
  objectsById_.insert(id, &object);
  idsByObject_.insert(&object, id);
  return id;
}

/// True where a reference by the id would lead to another object of this output.
bool WriteState::IsTaken(const QString& id, const SchemaObject& object) const {
  if (objectsById_.contains(id))
    return true;
  // What has been here before goes on sharing its id with whom it shared it.
  const auto left = leftStylesById_.find(id);
  return left != leftStylesById_.end() && *left != &object && ComesFromElsewhere(object.GetUrl());
}

QString WriteState::GenerateUniqueId(const QString& id) {
  // Ids are never given back, so that those tried before are in use still.
  int& suffix = nextSuffixes_[id];
  for (;; ++suffix) {
    const QString unique = id + QString::number(suffix);
    if (!objectsById_.contains(unique) && !leftStylesById_.contains(unique))
      return unique;
  }
}

QString WriteState::GetObjectId(const SchemaObject& object) const {
  if (idsByObject_.isEmpty() || (object.GetId().isEmpty() && !namesNameless_))
    return object.GetId();
  return idsByObject_.value(&object, object.GetId());
}

void WriteState::WriteObjUrl(SchemaObject* object, const QString& url) {
  const bool isSchema =
      object && object->GetSchema().SubstitutesFor(CustomSchema::GetClassSchema());
  WriteObjUrl(object, url, isSchema ? schemaSets_ : styleSets_);
}

void WriteState::WriteObjUrl(SchemaObject* object, const QString& url, const ObjectSets& sets) {
  if (object && sets.empty()) {
    xml() << object->GetUrl();
    if (!object->GetId().isEmpty()) {
      stream_ << "#";
      xml() << object->GetId();
    }
  } else if (object && (Contains(sets, *object) || leftStyles_.value(object))) {
    stream_ << "#";
    xml() << AssignId(*object);
  } else {
    xml() << GetRelativeUrl(url);
  }
}

} // namespace vorrel::kestan
