#include "kestan/write/stylehoist.h"

#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/custom/customschema.h" // schemas are hoisted apart from styles
#include "kestan/host/url.h"
#include "kestan/style/styleselector.h" // the other kind of what is hoisted
#include "kestan/write/outputurls.h"
#include "kestan/write/writestate.h"

#include <algorithm>

namespace vorrel::kestan {

void StyleHoist::Push() {
  styleSets_.push_back(std::make_unique<ObjectSet>());
  schemaSets_.push_back(std::make_unique<ObjectSet>());
}

void StyleHoist::Pop() {
  if (styleSets_.empty())
    return;
  styleSets_.pop_back();
  schemaSets_.pop_back();
}

bool StyleHoist::HasStylesOrSchemas() const {
  return !styleSets_.empty() && !(styleSets_.back()->empty() && schemaSets_.back()->empty());
}

bool StyleHoist::AddStyle(const StyleSelector& style) { return Hoist(style, styleSets_); }

bool StyleHoist::HasStyle(const StyleSelector& style) const { return Contains(styleSets_, style); }

bool StyleHoist::AddSchema(const CustomSchema& schema) { return Hoist(schema, schemaSets_); }

bool StyleHoist::Contains(const ObjectSets& sets, const SchemaObject& object) {
  return std::any_of(sets.begin(), sets.end(),
                     [&](const auto& set) { return set->contains(object); });
}

bool StyleHoist::Hoist(const SchemaObject& object, const ObjectSets& sets) {
  const QString& url = object.GetUrl();
  const UrlType type = GGetUrlType(url);
  const bool isNameless = object.GetId().isEmpty() || type == kUrlRuntime;
  if (isNameless)
    nameless_.insert(object);
  const bool isOnServer = type == kUrlNetwork && !isNameless && !urls_.IsRootUrl(url);
  if (sets.empty() || innerDocuments_ > 0 || isOnServer || Contains(sets, object) ||
      leftStyles_.contains(&object))
    return false;
  return sets.back()->insert(object);
}

void StyleHoist::AddOwnStyles(const mmvector<RefPtr<StyleSelector>>& styles) {
  for (const RefPtr<StyleSelector>& style : styles) {
    if (!style)
      continue;
    leftStyles_.remove(style.get());
    styleSets_.back()->insert(*style);
  }
}

void StyleHoist::LeaveStyle(const StyleSelector& style, bool mayBeRenamed) {
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

void StyleHoist::AssignStyleIds() {
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

void StyleHoist::WriteStyles(WriteState& state) {
  if (styleSets_.empty())
    return;
  state.SetStyleDefaultsEnabled(false);
  WriteObjs(*styleSets_.back(), state);
  state.SetStyleDefaultsEnabled(true);
}

void StyleHoist::WriteSchemas(WriteState& state) {
  if (!schemaSets_.empty())
    WriteObjs(*schemaSets_.back(), state);
}

void StyleHoist::WriteObjs(const ObjectSet& objects, WriteState& state) {
  AssignIds(objects);
  objects.ForEach([&state](const SchemaObject& object) { object.WriteKml(state); });
}

void StyleHoist::AssignIds(const ObjectSet& objects) {
  objects.ForEach([this](const SchemaObject& object) { AssignId(object); });
}

QString StyleHoist::AssignId(const SchemaObject& object) {
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
bool StyleHoist::IsTaken(const QString& id, const SchemaObject& object) const {
  if (objectsById_.contains(id))
    return true;
  // What has been here before goes on sharing its id with whom it shared it.
  const auto left = leftStylesById_.find(id);
  return left != leftStylesById_.end() && *left != &object &&
         urls_.ComesFromElsewhere(object.GetUrl());
}

QString StyleHoist::GenerateUniqueId(const QString& id) {
  return freeIds_.Find(
      id, [&id](int suffix) { return id + QString::number(suffix); },
      [this](const QString& unique) {
        return !objectsById_.contains(unique) && !leftStylesById_.contains(unique);
      });
}

QString StyleHoist::GetObjectId(const SchemaObject& object) const {
  if (idsByObject_.isEmpty() || (object.GetId().isEmpty() && !namesNameless_))
    return object.GetId();
  return idsByObject_.value(&object, object.GetId());
}

void StyleHoist::WriteObjUrl(Utf8OStream& stream, SchemaObject* object, const QString& url) {
  const XmlUtf8OStream xml(stream);
  const bool isSchema =
      object && object->GetSchema().SubstitutesFor(CustomSchema::GetClassSchema());
  const ObjectSets& sets = isSchema ? schemaSets_ : styleSets_;
  if (object && sets.empty()) {
    xml << object->GetUrl();
    if (!object->GetId().isEmpty()) {
      stream << "#";
      xml << object->GetId();
    }
  } else if (object && (Contains(sets, *object) || leftStyles_.value(object))) {
    stream << "#";
    xml << AssignId(*object);
  } else {
    xml << urls_.GetRelativeUrl(url);
  }
}

} // namespace vorrel::kestan
