// The styles of a feature: an inline one, a shared one, and what they make together.

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/keptvalues.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objectobserver.h"
#include "kestan/custom/customschema.h" // the class of a feature that a document declares
#include "kestan/custom/extendeddata.h" // collected for a write with the styles
#include "kestan/feature/abstractfeature.h"
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/read/typedloadobserver.h"
#include "kestan/style/style.h" // features look as their styles say
#include "kestan/style/stylecache.h"
#include "kestan/style/stylemap.h"
#include "kestan/write/stylehoist.h" // what is written where it stands
#include "kestan/write/writestate.h"

namespace vorrel::kestan {

namespace {

const AbstractFeatureSchema& Fields() { return AbstractFeatureSchema::GetSingleton(); }

void LeaveInlineStyle(const SchemaObject* selector, WriteState& state) {
  if (!selector)
    return;
  state.hoist().AddInPlace(static_cast<const StyleSelector&>(*selector),
                           StyleHoist::Place::kInline);
  if (const StyleMap* map = StyleMap::As(selector))
    map->CollectReferences(state, true);
}

} // namespace

void AbstractFeature::SetStyleUrl(const QString& url) { Fields().styleUrl.CheckSet(*this, url); }

void AbstractFeature::SetInlineStyleSelector(StyleSelector* selector) {
  Fields().inlineStyleSelector.CheckSet(*this, selector);
}

void AbstractFeature::SetReferencedStyleSelector(StyleSelector* selector) {
  if (referencedStyleSelector_ == selector || (selector && selector->GetBit(kBitDeleting)))
    return;
  DropKeptValues(Fields().styleUrl);
  BindStyleSelector(selector,
                    selector ? selector->MakeStyleUrl(GetBaseUrl(), styleUrl_) : QString());
}

void AbstractFeature::BindStyleSelector(StyleSelector* selector, const QString& url) {
  const DeletionDeferrer deferrer;
  SetBit(kBitLoadFailed, false);
  ReleaseReferencedStyleSelector();
  referencedStyleSelector_ = selector;
  if (selector)
    selector->AddOwner(*this);
  styleUrl_ = url;
  ReleaseFlattenedStyleSelector();
  SchemaObject::NotifyFieldChanged(Fields().styleUrl); // the reference is resolved already
}

void AbstractFeature::ReleaseReferencedStyleSelector() {
  if (const RefPtr<StyleSelector> former = std::move(referencedStyleSelector_))
    former->RemOwner(*this);
}

/// Features share it, on several threads, so that it has no owner.
void AbstractFeature::ReleaseFlattenedStyleSelector() const { flattenedStyleSelector_.reset(); }

void AbstractFeature::OnUrlLoad(const StrField&, SchemaObject* loaded) {
  if (!loaded) {
    SetBit(kBitLoadFailed, !styleUrl_.isEmpty());
    SchemaObject::NotifyFieldChanged(Fields().styleUrl); // a new load would fail again
    return;
  }
  auto* selector = static_cast<StyleSelector*>(loaded);
  if (StyleSelector::IsBuiltInUrl(styleUrl_))
    BindStyleSelector(selector, styleUrl_); // by the name that it has
  else if (referencedStyleSelector_ != selector)
    BindStyleSelector(selector, selector->MakeStyleUrl(GetBaseUrl(), styleUrl_));
}

void AbstractFeature::OnStyleUrlChanged() {
  ReleaseReferencedStyleSelector();
  ReleaseFlattenedStyleSelector();
  TypedLoadObserver<StyleSelector>::Create(*this, Fields().styleUrl);
}

void AbstractFeature::OnInlineStyleSelectorChanged() { ReleaseFlattenedStyleSelector(); }

void AbstractFeature::SetStyleMode(int mode) {
  if (styleMode_ == mode)
    return;
  styleMode_ = mode;
  NotifyFieldChanged(Fields().styleMode);
}

Style* AbstractFeature::InlineStyle() {
  const DeletionDeferrer deferrer;
  if (!inlineStyleSelector_ || !inlineStyleSelector_->isOfType(Style::GetClassSchema())) {
    const KmlId id = GetUniqueRuntimeId(KmlId(QStringLiteral("inline"), GetUrl()));
    SetInlineStyleSelector(Style::create(id, GetBaseUrl(), nullptr).get());
  }
  return static_cast<Style*>(inlineStyleSelector_.get());
}

const Style* AbstractFeature::getRenderStyle(int mode) const {
  const Style* style = nullptr;
  if (const StyleSelector* selector = UpdateRenderStyleSelector())
    style = selector->InternalGetSelectedStyle(mode);
  else if (GetBit(kBitLoadFailed))
    style = Style::GetFailedStyle();
  else if (!styleUrl_.isEmpty())
    style = Style::GetFetchingStyle();
  return style ? style : Style::GetDefaultStyle(mode);
}

const StyleSelector* AbstractFeature::getRenderStyleSelector() const {
  UpdateRenderStyleSelector();
  if (flattenedStyleSelector_)
    return flattenedStyleSelector_.get();
  if (referencedStyleSelector_)
    return referencedStyleSelector_.get();
  if (inlineStyleSelector_)
    return inlineStyleSelector_.get();
  if (GetBit(kBitLoadFailed))
    return Style::GetFailedStyle();
  return StyleMap::GetDefaultStyleMap();
}

bool AbstractFeature::HasSpecifiedHighlightStyle() const {
  const StyleMap* map = StyleMap::As(getRenderStyleSelector());
  QString key;
  return map && map->GetStyleMapPair(kStyleHighlight, key);
}

/// The selector to draw with; null when the feature has none.
const StyleSelector* AbstractFeature::UpdateRenderStyleSelector() const {
  if (!inlineStyleSelector_ || !referencedStyleSelector_)
    return inlineStyleSelector_ ? inlineStyleSelector_.get() : referencedStyleSelector_.get();
  if (!flattenedStyleSelector_ ||
      !flattenedStyleSelector_->IsFlattenedAfter(*referencedStyleSelector_) ||
      !flattenedStyleSelector_->IsFlattenedAfter(*inlineStyleSelector_))
    FlattenStyleSelectors();
  return flattenedStyleSelector_ ? flattenedStyleSelector_.get() : inlineStyleSelector_.get();
}

/// Other threads may do the same with the same styles: nothing is written but what this feature and
/// this thread have for themselves.
void AbstractFeature::FlattenStyleSelectors() const {
  ReleaseFlattenedStyleSelector();
  const bool isStyle = inlineStyleSelector_->isOfType(Style::GetClassSchema());
  // Generators write the same inline style again and again: neighbours share the result.
  StyleCache* cache = isStyle ? StyleCache::GetCurrent() : nullptr;
  const auto* inlineStyle = cache ? static_cast<const Style*>(inlineStyleSelector_.get()) : nullptr;
  if (cache)
    flattenedStyleSelector_ = cache->Find(*inlineStyle, *referencedStyleSelector_);
  if (flattenedStyleSelector_)
    return;
  const UnlistedObjects scope;
  flattenedStyleSelector_ =
      referencedStyleSelector_->InternalFlatten(inlineStyleSelector_.get(), false);
  if (!flattenedStyleSelector_)
    return;
  flattenedStyleSelector_->SetFlattenRevision(ObjectObserver::s_revision_counter_);
  if (cache)
    cache->Set(*inlineStyle, *referencedStyleSelector_, *flattenedStyleSelector_);
}

void AbstractFeature::CollectStylesAndSchemas(WriteState& state) const {
  StyleHoist& hoist = state.hoist();
  if (GetSchema().IsCustom())
    hoist.AddClass(static_cast<const CustomSchema&>(GetSchema()));
  if (extendedData_)
    extendedData_->CollectSchemas(state);
  if (hoist.AddReference(*this, styleUrl_, referencedStyleSelector_.get(), true))
    referencedStyleSelector_->InternalCollectStyles(state);
  // Inline selectors go out where they stand. What they refer to has to be found.
  if (const KeptField* kept = GetKeptField(Fields().inlineStyleSelector)) {
    for (const KeptValue& former : kept->displaced)
      LeaveInlineStyle(former.object.get(), state);
  }
  LeaveInlineStyle(inlineStyleSelector_.get(), state);
}

} // namespace vorrel::kestan
