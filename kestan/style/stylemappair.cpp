#include "kestan/style/stylemappair.h"

#include "kestan/core/constructionguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objurlfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/read/typedloadobserver.h"
#include "kestan/style/style.h"
#include "kestan/style/stylemappairschema.h"
#include "kestan/style/stylemapschema.h"

namespace vorrel::kestan {

template class SchemaT<StyleMap::Pair, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<StyleMap::Pair>;
template class ObjUrlField<StyleSelector, StyleReference>;

namespace {

const StyleMapPairSchema& Fields() { return StyleMapPairSchema::GetSingleton(); }

} // namespace

StyleMapPairSchema::StyleMapPairSchema() : SchemaT("Pair", nullptr, Namespace::kKml) {}

const Schema& StyleMap::Pair::GetClassSchema() { return StyleMapPairSchema::GetSingleton(); }

StyleMap::Pair::Pair(const KmlId& id, const QString& baseUrl, bool notify)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

StyleMap::Pair::Pair(const QString& key, Style& style, StyleMap& map) : Pair(key, &style, map) {}

StyleMap::Pair::Pair(const QString& key, StyleMap& map) : Pair(key, nullptr, map) {}

StyleMap::Pair::Pair(const QString& key, Style* style, StyleMap& map)
    : SchemaObject(GetClassSchema(), KmlId(QString(), map.GetUrl()), map.GetBaseUrl()) {
  const ConstructionGuard building(*this);
  const DeletionDeferrer deferrer;
  NotifyPostCreate();
  SetKey(key);
  StyleMapSchema::GetSingleton().pairs.add(map, this);
  SetStyleSelector(style);
}

StyleMap::Pair::~Pair() {
  NotifyPreDelete();
  ReleaseReference();
}

void StyleMap::Pair::SetKey(const QString& key) { Fields().key.CheckSet(*this, key); }

void StyleMap::Pair::SetStyleUrl(const QString& url) { Fields().styleUrl.CheckSet(*this, url); }

void StyleMap::Pair::SetStyleSelector(StyleSelector* selector) {
  if (!selector || selector == inlineSelector_ || selector == reference_.get() ||
      selector->GetBit(kBitDeleting))
    return;
  const bool isNameless = selector->GetUrl().isEmpty() && selector->GetId().isEmpty();
  if (isNameless && !MayOwn(*selector))
    return;
  const DeletionDeferrer deferrer;
  const RefPtr<StyleSelector> kept(selector);
  DropKeptValues(Fields().styleSelector);
  SetBit(kBitLoadFailed, false);
  ReleaseReference();
  styleUrl_.clear();
  Fields().styleSelector.Replace(*this, isNameless ? selector : nullptr);
  if (isNameless) {
    MarkInline();
    SchemaObject::NotifyFieldChanged(Fields().styleSelector);
  } else {
    styleUrl_ = selector->MakeStyleUrl(GetBaseUrl(), QString());
    SetReference(*selector);
  }
}

bool StyleMap::Pair::MayOwn(const StyleSelector& selector) const {
  return Fields().styleSelector.Accepts(*this, selector);
}

void StyleMap::Pair::SetReference(StyleSelector& selector) {
  const DeletionDeferrer deferrer;
  ReleaseReference();
  reference_.Set(selector);
  selector.AddOwner(*this);
  UpdateKeepsReference();
  SchemaObject::NotifyFieldChanged(Fields().styleUrl); // the reference is resolved already
}

void StyleMap::Pair::MarkInline() {
  StyleMap* map = As(inlineSelector_.get());
  if (!map)
    return;
  map->isInline_ = true;
  for (const RefPtr<Pair>& pair : map->pairs_) {
    if (pair)
      pair->UpdateKeepsReference();
  }
}

void StyleMap::Pair::ReleaseReference() {
  keepsRing_ = false;
  if (const RefPtr<StyleSelector> former = reference_.Release())
    former->RemOwner(*this);
}

void StyleMap::Pair::ForgetReference() {
  const DeletionDeferrer deferrer;
  ReleaseReference();
  SetBit(kBitLoadFailed, true);
  SchemaObject::NotifyFieldChanged(Fields().styleUrl);
}

const Style* StyleMap::Pair::GetStandIn() const {
  if (GetBit(kBitLoadFailed))
    return Style::GetFailedStyle();
  return styleUrl_.isEmpty() ? Style::GetDefaultStyle() : Style::GetFetchingStyle();
}

void StyleMap::Pair::OnUrlLoad(const StrField&, SchemaObject* loaded) {
  if (!loaded) {
    SetBit(kBitLoadFailed, !styleUrl_.isEmpty());
    SchemaObject::NotifyFieldChanged(Fields().styleUrl); // a new load would fail again
  } else if (IsBuiltInUrl(styleUrl_)) {
    SetReference(static_cast<StyleSelector&>(*loaded)); // by the name that it has
  } else {
    SetStyleSelector(static_cast<StyleSelector*>(loaded));
  }
}

const Field* StyleMap::Pair::FindObject(const SchemaObject& child, int* index) const {
  if (&child == reference_.get()) {
    if (index)
      *index = 0;
    return &Fields().styleUrl;
  }
  return SchemaObject::FindObject(child, index);
}

void StyleMap::Pair::NotifyFieldChanged(const Field& field) {
  const DeletionDeferrer deferrer;
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

void StyleMap::Pair::UpdateKeyState() { keyState_ = GetModeOf(key_); }

void StyleMap::Pair::CopyNonFieldStuff(const SchemaObject& src) {
  UpdateKeyState();
  SchemaObject::CopyNonFieldStuff(src);
}

} // namespace vorrel::kestan
