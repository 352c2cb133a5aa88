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

namespace {

/// A reader drops the blanks behind a reference.
bool IsReadableId(const QString& id) { return !id.isEmpty() && !id.back().isSpace(); }

} // namespace

void StyleHoist::Push() {
  levels_.push_back(std::make_unique<Level>());
  ++walks_;
}

void StyleHoist::Pop() {
  if (!levels_.empty())
    levels_.pop_back();
}

bool StyleHoist::HasStylesOrSchemas() const {
  if (levels_.empty())
    return false;
  const Level& level = *levels_.back();
  return (level.ownStyles && !level.ownStyles->empty()) || !level.styles.empty() ||
         !level.schemas.empty();
}

bool StyleHoist::AddStyle(const StyleSelector& style) {
  if (!MayHoist(style) || IsHoisted(style))
    return false;
  const auto record = records_.constFind(&style);
  if (record != records_.constEnd() && record->isInPlace)
    return false;
  return levels_.back()->styles.insert(style);
}

bool StyleHoist::AddSchema(const CustomSchema& schema) {
  return MayHoist(schema) && HoistSchema(schema);
}

void StyleHoist::AddOwnSchema(const CustomSchema& schema) {
  if (levels_.empty() || innerDocuments_ > 0 || !HoistSchema(schema))
    return;
  // It keeps its id. What comes from elsewhere may need another one.
  const QString& id = schema.GetId();
  const Claim* const claim = claimsById_.value(id);
  if (!id.isEmpty() && !(claim && claim->isGiven))
    GiveId(schema, id);
}

void StyleHoist::AddClass(const CustomSchema& schema) {
  const CustomSchema* const present = classes_.value(schema.GetName());
  if (!present || !present->DeclaresSame(schema))
    AddSchema(schema);
}

bool StyleHoist::HoistSchema(const CustomSchema& schema) {
  if (!schemas_.insert(schema))
    return false;
  levels_.back()->schemas.push_back(&schema);
  classes_.insert(schema.GetName(), &schema);
  return true;
}

void StyleHoist::AddOwnStyles(const mmvector<RefPtr<StyleSelector>>& styles) {
  levels_.back()->ownStyles = &styles;
}

bool StyleHoist::IsHoisted(const StyleSelector& style) const {
  return std::any_of(levels_.begin(), levels_.end(),
                     [&](const auto& level) { return level->styles.contains(style); });
}

/// What is on a server is there for all documents that refer to it.
bool StyleHoist::MayHoist(const SchemaObject& object) const {
  const QString& url = object.GetUrl();
  const bool isOnServer =
      !object.GetId().isEmpty() && GGetUrlType(url) == kUrlNetwork && !urls_.IsRootUrl(url);
  return !levels_.empty() && innerDocuments_ == 0 && !isOnServer;
}

StyleHoist::Claim& StyleHoist::GetClaim(const QString& id) {
  Claim*& claim = claimsById_[id];
  if (!claim)
    claim = &claims_.emplace_back();
  return *claim;
}

StyleHoist::Record& StyleHoist::Meet(const StyleSelector& style) {
  const auto known = records_.find(&style);
  if (known != records_.end())
    return *known;
  Record record;
  if (!style.GetId().isEmpty())
    record.claim = &GetClaim(style.GetId());
  return *records_.insert(&style, record);
}

void StyleHoist::List(Claim& claim) {
  if (!claim.isListed)
    unsettled_.push_back(&claim);
  claim.isListed = true;
}

void StyleHoist::AddInPlace(const StyleSelector& style, Place place) {
  if (!IsInOutermost())
    return; // it has been here already
  Record& record = Meet(style);
  if (record.isInPlace)
    return;
  record.isInPlace = true;
  record.isShared = record.isNamed = place == Place::kShared;
  if (!levels_.empty())
    levels_.back()->styles.erase(style); // something in front of it refers to it
  Claim* const claim = record.claim;
  if (!claim)
    return;
  if (claim->styles.empty() && claim->awaited && claim->awaited != &style)
    records_[claim->awaited].isMistaken = true;
  claim->styles.push_back(&style);
  List(*claim);
}

bool StyleHoist::AddReference(const SchemaObject& owner, const QString& url,
                              const StyleSelector* style, bool isInOrder) {
  if (!style) {
    const bool isLocal =
        url.startsWith(QLatin1Char('#')) && !urls_.ComesFromElsewhere(owner.GetBaseUrl());
    if (isLocal && IsInOutermost()) {
      Claim& claim = GetClaim(url.mid(1));
      claim.isOpen = true;
      List(claim);
    }
    return false;
  }
  Record& record = Meet(*style);
  if (IsInOutermost()) {
    Claim* const claim = record.claim;
    if (!claim) {
      if (!record.isReferenced)
        nameless_.push_back(style);
    } else if (claim->styles.empty() && isInOrder && (!claim->awaited || claim->awaited == style)) {
      claim->awaited = style;
    } else if (!isInOrder || claim->styles.empty() || claim->styles.back() != style) {
      record.isMistaken = true;
      List(*claim);
    }
  }
  record.isReferenced = true;
  if (record.isInPlace || record.walk == walks_ || style->IsMadeFrom(url))
    return false;
  record.walk = walks_;
  return true;
}

void StyleHoist::AssignStyleIds() {
  if (levels_.empty())
    return;
  if (IsInOutermost())
    SettleIds();
  // Those that are here keep theirs before others get new ones.
  const Level& level = *levels_.back();
  if (level.ownStyles) {
    for (const RefPtr<StyleSelector>& style : *level.ownStyles) {
      if (style)
        AssignId(*style);
    }
  }
  level.styles.ForEach([this](const SchemaObject& style) { AssignId(style); });
  for (const StyleSelector* style : nameless_) {
    Record& record = records_[style];
    if (!record.isInPlace)
      continue; // it's hoisted, or isn't written at all
    record.isNamed = true;
    AssignId(*style);
  }
  nameless_.clear();
}

void StyleHoist::SettleIds() {
  for (Claim* claim : unsettled_) {
    claim->isListed = false;
    Settle(*claim);
  }
  unsettled_.clear();
}

/// The style whose id it is. Null when all shall go without.
const StyleSelector* StyleHoist::FindKeeper(const Claim& claim) const {
  const StyleSelector* keeper = nullptr;
  int best = claim.isOpen ? 1 : 0;
  for (const StyleSelector* style : claim.styles) {
    const Record record = records_.value(style);
    const int rank = record.isSettled ? 4 : IsFromElsewhere(*style) ? 1 : record.isShared ? 3 : 2;
    if (rank > best) {
      keeper = style;
      best = rank;
    }
  }
  return keeper;
}

void StyleHoist::Settle(Claim& claim) {
  const StyleSelector* const keeper = FindKeeper(claim);
  const bool isMistaken =
      std::any_of(claim.styles.begin(), claim.styles.end(),
                  [this](const StyleSelector* style) { return records_[style].isMistaken; });
  for (const StyleSelector* style : claim.styles) {
    Record& record = records_[style];
    if (record.isSettled)
      continue;
    record.isSettled = true;
    const bool isFromElsewhere = IsFromElsewhere(*style);
    // What has been here before goes on sharing its id with whom it shared it.
    const bool maySharesId = !record.isShared && !isFromElsewhere && !isMistaken;
    const bool isReadable = !record.isReferenced || IsReadableId(style->GetId());
    const bool keepsId = (style == keeper || maySharesId) && isReadable;
    const bool needsId = record.isReferenced || record.isShared;
    record.isNamed |= needsId && (!keepsId || isFromElsewhere);
    if (!keepsId)
      GiveId(*style, needsId ? GenerateUniqueId(style->GetId().trimmed()) : QString());
    else if (record.isNamed)
      GiveId(*style, style->GetId());
  }
}

bool StyleHoist::IsFromElsewhere(const SchemaObject& object) const {
  const QString& url = object.GetUrl();
  return urls_.ComesFromElsewhere(url) || url.startsWith(QLatin1String("runtime://"));
}

void StyleHoist::GiveId(const SchemaObject& object, const QString& id) {
  idsByObject_.insert(&object, id);
  if (!id.isEmpty())
    GetClaim(id).isGiven = true;
}

QString StyleHoist::AssignId(const SchemaObject& object) {
  const auto known = idsByObject_.constFind(&object);
  if (known != idsByObject_.constEnd())
    return *known;
  QString id = object.GetId();
  namesNameless_ |= id.isEmpty(); // and yet something refers to it
  const Claim* const claim = claimsById_.value(id);
  const bool isTaken = claim && (claim->isGiven || !claim->styles.empty() ||
                                 (claim->isOpen && IsFromElsewhere(object)));
  const bool isBuiltIn = StyleSelector::IsBuiltInUrl(object.GetUrl());
  if (!IsReadableId(id) || isTaken || isBuiltIn)
    id = GenerateUniqueId(id.isEmpty() || isBuiltIn ? object.getType() : id.trimmed());
  GiveId(object, id);
  return id;
}

void StyleHoist::WriteStyles(WriteState& state) {
  if (levels_.empty())
    return;
  const Level& level = *levels_.back();
  state.SetStyleDefaultsEnabled(false);
  if (level.ownStyles) {
    for (const RefPtr<StyleSelector>& style : *level.ownStyles) {
      if (style)
        style->WriteKml(state);
    }
  }
  level.styles.ForEach([this](const SchemaObject& style) { AssignId(style); });
  level.styles.ForEach([&state](const SchemaObject& style) { style.WriteKml(state); });
  state.SetStyleDefaultsEnabled(true);
}

void StyleHoist::WriteSchemas(WriteState& state) {
  if (levels_.empty())
    return;
  for (const SchemaObject* schema : levels_.back()->schemas) {
    if (!schema->GetId().isEmpty())
      AssignId(*schema);
    schema->WriteKml(state);
  }
}

QString StyleHoist::GenerateUniqueId(const QString& id) {
  return freeIds_.Find(
      id, [&id](int suffix) { return id + QString::number(suffix); },
      [this](const QString& unique) { return !claimsById_.contains(unique); });
}

QString StyleHoist::GetObjectId(const SchemaObject& object) const {
  const QString& id = object.GetId();
  if (object.GetBit(kBitMadeUpId))
    return QString();
  if (id.isEmpty() && !namesNameless_)
    return id;
  const auto known = idsByObject_.constFind(&object);
  if (known != idsByObject_.constEnd())
    return *known;
  // A reader would take an object of any other class for the style, and find none.
  const bool hidesStyle = !claimsById_.isEmpty() && IsFromElsewhere(object) &&
                          claimsById_.contains(id) && !records_.contains(&object);
  return hidesStyle ? QString() : id;
}

bool StyleHoist::HasName(const SchemaObject& object) const {
  const auto record = records_.constFind(&object);
  if (record != records_.constEnd() && record->isNamed)
    return true;
  if (object.isOfType(CustomSchema::GetClassSchema()))
    return !object.GetId().isEmpty() && schemas_.contains(object);
  return IsHoisted(static_cast<const StyleSelector&>(object));
}

void StyleHoist::WriteObjUrl(Utf8OStream& stream, SchemaObject* object, const QString& url) {
  const XmlUtf8OStream xml(stream);
  if (object && levels_.empty()) {
    xml << object->GetUrl();
    if (!object->GetId().isEmpty()) {
      stream << "#";
      xml << object->GetId();
    }
    return;
  }
  if (object && HasName(*object)) {
    stream << "#";
    xml << AssignId(*object);
  } else {
    xml << urls_.GetRelativeUrl(url);
  }
}

} // namespace vorrel::kestan
