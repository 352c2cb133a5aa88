#include "kestan/style/stylemappair.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/read/typedloadobserver.h"
#include "kestan/style/style.h"
#include "kestan/style/stylemappairschema.h"
#include "kestan/style/stylemapschema.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<StyleMap::Pair, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<StyleMap::Pair>;

namespace {

/// The search for a loop ends after so many pairs.
constexpr int kMaxLoopSearch = 100;

const StyleMapPairSchema& Fields() { return StyleMapPairSchema::GetSingleton(); }

StyleMap* AsMap(SchemaObject* object) {
  return object && object->isOfType(StyleMap::GetClassSchema()) ? static_cast<StyleMap*>(object)
                                                                : nullptr;
}

} // namespace

StyleMapPairSchema::StyleMapPairSchema() : SchemaT("Pair", nullptr, Namespace::kKml) {}

bool OwnSelectorField::Accepts(const SchemaObject& owner, const SchemaObject& child) const {
  return ObjField::Accepts(owner, child) &&
         static_cast<const StyleMap::Pair&>(owner).MayOwn(static_cast<const StyleSelector&>(child));
}

const Schema& StyleMap::Pair::GetClassSchema() { return StyleMapPairSchema::GetSingleton(); }

StyleMap::Pair::Pair(const KmlId& id, const QString& baseUrl, bool notify)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
  else
    SetBit(kBitNoCreationNotify, true);
}

StyleMap::Pair::Pair(const QString& key, Style& style, StyleMap& map)
    : Pair(KmlId(QString(), map.GetUrl()), map.GetBaseUrl()) {
  SetKey(key);
  SetStyleSelector(&style);
  StyleMapSchema::GetSingleton().pairs.add(map, this);
}

StyleMap::Pair::~Pair() {
  NotifyPreDelete();
  ReleaseReference();
}

void StyleMap::Pair::SetKey(const QString& key) { Fields().key.CheckSet(*this, key); }

void StyleMap::Pair::SetStyleUrl(const QString& url) { Fields().styleUrl.CheckSet(*this, url); }

void StyleMap::Pair::SetStyleSelector(StyleSelector* selector) {
  const bool isNameless = selector && selector->GetUrl().isEmpty() && selector->GetId().isEmpty();
  if (!selector || selector == inlineSelector_ || selector == referencedSelector_ ||
      (isNameless && !MayOwn(*selector)))
    return;
  const RefPtr<StyleSelector> kept(selector);
  SetBit(kBitLoadFailed, false);
  if (const RefPtr<StyleSelector> former = std::move(inlineSelector_))
    former->RemOwner(*this);
  ReleaseReference();
  styleUrl_.clear();
  if (isNameless) {
    inlineSelector_ = selector;
    selector->AddOwner(*this);
    MarkInline();
    SchemaObject::NotifyFieldChanged(Fields().styleSelector);
  } else {
    styleUrl_ = selector->MakeStyleUrl(GetBaseUrl(), QString());
    SetReference(selector);
  }
}

bool StyleMap::Pair::MayOwn(const StyleSelector& selector) const {
  const bool isMap = selector.isOfType(StyleMap::GetClassSchema());
  const StyleMap* owner = AsMap(GetOwner(0));
  return !isMap || !owner || !static_cast<const StyleMap&>(selector).Holds(*owner);
}

void StyleMap::Pair::SetReference(StyleSelector* selector) {
  ReleaseReference();
  referencedSelector_ = selector;
  selector->AddOwner(*this);
  UpdateKeepsReference();
  SchemaObject::NotifyFieldChanged(Fields().styleUrl); // the reference is resolved already
}

void StyleMap::Pair::MarkInline() {
  StyleMap* map = AsMap(inlineSelector_.get());
  if (!map || map->isInline_)
    return;
  map->isInline_ = true;
  for (const RefPtr<Pair>& pair : map->pairs_) {
    if (pair)
      pair->UpdateKeepsReference();
  }
}

/// A reference of which the target doesn't count: the pointer is there, the count isn't.
void StyleMap::Pair::SetKeepsReference(bool keeps) {
  if (keeps == keepsReference_ || !referencedSelector_)
    return;
  if (keeps)
    referencedSelector_->ref();
  else if (referencedSelector_->GetRefCount() > 1)
    referencedSelector_->unref();
  else
    return; // nobody else holds the map
  keepsReference_ = keeps;
}

void StyleMap::Pair::ReleaseReference() {
  SetKeepsReference(true);
  if (const RefPtr<StyleSelector> former = std::move(referencedSelector_))
    former->RemOwner(*this);
}

void StyleMap::Pair::ForgetReference() {
  ReleaseReference();
  SetBit(kBitLoadFailed, true);
  SchemaObject::NotifyFieldChanged(Fields().styleUrl);
}

/// Maps that hold each other would never go. So a reference doesn't count where it leads back to
/// its own map, nor where that map is a pair's own, and may be part of any other. It ends when its
/// target does.
void StyleMap::Pair::UpdateKeepsReference() {
  const StyleMap* target = AsMap(referencedSelector_.get());
  const StyleMap* owner = AsMap(GetOwner(0));
  if (target && owner)
    SetKeepsReference(IsBuiltInUrl(styleUrl_) || (!owner->isInline_ && !Keeps(*target, *owner)));
}

/// True when references that count lead from `map` to `other`, or too far to tell.
bool StyleMap::Pair::Keeps(const StyleMap& map, const StyleMap& other) {
  int steps = 0;
  mmvector<const StyleMap*> maps{&map};
  for (std::size_t i = 0; i < maps.size(); ++i) {
    if (maps[i] == &other)
      return true;
    for (const RefPtr<Pair>& pair : maps[i]->pairs_) {
      if (++steps > kMaxLoopSearch)
        return true;
      const StyleMap* next =
          pair && pair->keepsReference_ ? AsMap(pair->referencedSelector_.get()) : nullptr;
      if (next && std::find(maps.begin(), maps.end(), next) == maps.end())
        maps.push_back(next);
    }
  }
  return false;
}

const Style* StyleMap::Pair::GetStandIn() const {
  if (GetBit(kBitLoadFailed))
    return Style::GetFailedStyle();
  return styleUrl_.isEmpty() ? Style::GetDefaultStyle() : Style::GetFetchingStyle();
}

void StyleMap::Pair::OnUrlLoad(const StrField&, SchemaObject* loaded) {
  if (!loaded) {
    SetBit(kBitLoadFailed, true);
    SchemaObject::NotifyFieldChanged(Fields().styleUrl); // a new load would fail again
  } else if (IsBuiltInUrl(styleUrl_)) {
    SetReference(static_cast<StyleSelector*>(loaded)); // by the name that it has
  } else {
    SetStyleSelector(static_cast<StyleSelector*>(loaded));
  }
}

const Field* StyleMap::Pair::FindObject(const SchemaObject& child, int* index) const {
  if (&child == referencedSelector_.get()) {
    if (index)
      *index = 0;
    return &Fields().styleUrl;
  }
  return SchemaObject::FindObject(child, index);
}

void StyleMap::Pair::NotifyFieldChanged(const Field& field) {
  const StyleMapPairSchema& fields = Fields();
  if (&field == &fields.key) {
    UpdateKeyState();
  } else if (&field == &fields.styleUrl || &field == &fields.styleSelector) {
    // A selector of its own stands for the reference, of which the text is kept.
    ReleaseReference();
    if (inlineSelector_) {
      LoadObserver::Cancel(*this);
      SetBit(kBitLoadFailed, false);
      MarkInline();
    } else {
      TypedLoadObserver<StyleSelector>::Create(*this, fields.styleUrl);
    }
  }
  SchemaObject::NotifyFieldChanged(field);
}

void StyleMap::Pair::NotifyOwnerChanged() {
  SchemaObject::NotifyOwnerChanged();
  UpdateKeepsReference();
}

void StyleMap::Pair::UpdateKeyState() {
  keyState_ = key_ == QLatin1String("normal")      ? kStyleNormal
              : key_ == QLatin1String("highlight") ? kStyleHighlight
                                                   : -1;
}

void StyleMap::Pair::CopyNonFieldStuff(const SchemaObject& src) {
  UpdateKeyState();
  SchemaObject::CopyNonFieldStuff(src);
}

} // namespace vorrel::kestan
