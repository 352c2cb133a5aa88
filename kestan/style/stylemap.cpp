#include "kestan/style/stylemap.h"

#include "kestan/core/constructionguard.h"
#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/keptvalues.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/style/icon.h"
#include "kestan/style/style.h"
#include "kestan/style/styleclimbbatch.h"
#include "kestan/style/stylemappairschema.h"
#include "kestan/style/stylemapschema.h"
#include "kestan/style/stylesource.h"
#include "kestan/style/stylevisitor.h"
#include "kestan/write/stylehoist.h" // shared maps are collected for the output
#include "kestan/write/writestate.h"

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<StyleMap, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const char* const kModeKeys[] = {"normal", "highlight"};
static_assert(kStyleNormal == 0 && kStyleHighlight == 1);

} // namespace

StyleMapSchema::StyleMapSchema()
    : SchemaT("StyleMap", &StyleSelector::GetClassSchema(), Namespace::kKml) {}

const Schema& StyleMap::GetClassSchema() { return StyleMapSchema::GetSingleton(); }

const StyleMap* StyleMap::As(const SchemaObject* object) {
  return object && object->isOfType(GetClassSchema()) ? static_cast<const StyleMap*>(object)
                                                      : nullptr;
}

StyleMap* StyleMap::As(SchemaObject* object) {
  return const_cast<StyleMap*>(As(static_cast<const SchemaObject*>(object)));
}

QString StyleMap::GetKeyOf(int mode) {
  return mode == kStyleNormal || mode == kStyleHighlight ? QString::fromLatin1(kModeKeys[mode])
                                                         : QString();
}

int StyleMap::GetModeOf(const QString& key) {
  const auto matches = [&](const char* name) { return key == QLatin1String(name); };
  const auto place = std::find_if(std::begin(kModeKeys), std::end(kModeKeys), matches);
  return place == std::end(kModeKeys) ? -1 : static_cast<int>(place - std::begin(kModeKeys));
}

const QString& StyleMap::GetRootStyleMapBase() {
  static const QString base = QStringLiteral("root://styleMaps");
  return base;
}

QString StyleMap::GetStyleMapBase(const QString& url) {
  const QString styles = QStringLiteral("styles");
  const auto place = url.indexOf(styles);
  return place < 0 ? QString()
                   : QString(url).replace(place, styles.size(), QStringLiteral("styleMaps"));
}

StyleMap* StyleMap::find(const KmlId& id) { return As(SchemaObject::find(id)); }

StyleMap* StyleMap::find(const QString& url, const QString& id) { return find(KmlId(id, url)); }

RefPtr<StyleMap> StyleMap::create(const KmlId& id, const QString& baseUrl, MemoryManager* manager) {
  if (id.id.isEmpty())
    return {};
  if (StyleMap* present = find(id))
    return RefPtr<StyleMap>(present);
  return RefPtr<StyleMap>(new (manager) StyleMap(id, baseUrl));
}

RefPtr<StyleMap> StyleMap::create(const KmlId& id, const QString& baseUrl, Style& normal,
                                  Style& highlight, MemoryManager* manager) {
  RefPtr<StyleMap> map(new (manager) StyleMap(id, baseUrl));
  map->AddPair(kStyleNormal, normal);
  map->AddPair(kStyleHighlight, highlight);
  return map;
}

RefPtr<StyleMap> StyleMap::create(const Style& style, Icon& normal, Icon& highlight) {
  const QString url = GetStyleMapBase(style.GetUrl());
  if (style.GetId().isEmpty()) {
    return RefPtr<StyleMap>(
        new StyleMap(style, normal, highlight, KmlId(QStringLiteral("BAD"), url), QString()));
  }
  const KmlId id(style.GetId() + QLatin1String("+nicon=") + normal.GetKeyText() +
                     QLatin1String("+hicon=") + highlight.GetKeyText(),
                 url);
  if (StyleMap* present = find(id))
    return RefPtr<StyleMap>(present);
  return RefPtr<StyleMap>(new StyleMap(style, normal, highlight, id, QString()));
}

StyleMap::StyleMap(const KmlId& id, const QString& baseUrl, bool notify)
    : StyleSelector(GetClassSchema(), id, baseUrl) {
  FinishCreation(notify);
}

StyleMap::StyleMap(const Style& style, Icon& normal, Icon& highlight, const KmlId& id,
                   const QString& baseUrl)
    : StyleSelector(GetClassSchema(), id, baseUrl) {
  const ConstructionGuard building(*this);
  const DeletionDeferrer deferrer;
  AddPair(kStyleNormal, *style.CloneIcon(normal));
  AddPair(kStyleHighlight, *style.CloneHighlightIcon(highlight));
  NotifyPostCreate();
}

StyleMap::~StyleMap() { NotifyPreDelete(); }

void StyleMap::LeaveOwners() {
  const StyleClimbBatch batch;
  // Those that refer to the map without keeping it.
  while (SchemaObject* owner = GetOwner(0)) {
    RemOwner(*owner);
    if (owner->isOfType(Pair::GetClassSchema()))
      static_cast<Pair*>(owner)->ForgetReference();
  }
}

StyleMap::Pair* StyleMap::GetStyleMapPair(StyleStateMode mode, QString& key) const {
  const QString modeKey = GetKeyOf(mode);
  if (!modeKey.isEmpty())
    key = modeKey;
  const auto pair = std::find_if(pairs_.begin(), pairs_.end(), [&](const RefPtr<Pair>& candidate) {
    return candidate && candidate->GetKey() == key;
  });
  return pair == pairs_.end() ? nullptr : pair->get();
}

void StyleMap::setStyle(StyleStateMode mode, Style& style) {
  QString key;
  if (Pair* pair = GetStyleMapPair(mode, key))
    pair->SetStyleSelector(&style);
  else
    const RefPtr<Pair> added(new Pair(key, style, *this));
}

void StyleMap::AddPair(StyleStateMode mode, Style& style) {
  const RefPtr<Pair> pair(new Pair(GetKeyOf(mode), style, *this));
}

const StyleMap::Pair* StyleMap::FindPair(int state) const {
  const auto pair = std::find_if(pairs_.begin(), pairs_.end(), [&](const RefPtr<Pair>& candidate) {
    return candidate && candidate->GetKeyState() == state;
  });
  return pair == pairs_.end() ? nullptr : pair->get();
}

StyleSource StyleMap::Select(int mode) const {
  const StyleMap* map = this;
  const StyleMap* mark = this; // moves up at doubling distances, so that any loop meets it
  std::size_t steps = 0;
  std::size_t limit = 1;
  while (const Pair* pair = map->FindPair(mode)) {
    const StyleSelector* selector = pair->GetStyleSelector();
    if (!selector)
      return {pair->GetStandIn(), this, pair, StyleSource::kMissing};
    map = As(selector);
    if (!map)
      return {static_cast<const Style*>(selector), this, pair, StyleSource::kGiven};
    if (map == mark)
      return {Style::GetDefaultStyle(), this, pair, StyleSource::kLoop};
    if (++steps == limit) {
      mark = map;
      limit *= 2;
      steps = 0;
    }
  }
  return {};
}

const Style* StyleMap::InternalGetSelectedStyle(int mode) const { return Select(mode).style; }

RefPtr<StyleSelector> StyleMap::FlattenLook(int mode, const StyleSelector* other,
                                            bool entered) const {
  const StyleSources sources(entered ? this : other, entered ? other : this, mode);
  const StyleSource* top = sources.begin();
  if (top == sources.end())
    return nullptr;
  const StyleSource* below = top + 1;
  return top->style->InternalFlatten(below == sources.end() ? nullptr : below->style, true);
}

RefPtr<StyleSelector> StyleMap::InternalFlatten(const StyleSelector* other, bool entered) const {
  const NotificationDeferrer deferrer;
  const QString id = GetId().isEmpty() ? QStringLiteral("map") : GetId();
  const RefPtr<SchemaObject> result = clone(KmlId(id, GetUrl()), false, nullptr);
  if (!result)
    return {};
  auto& map = static_cast<StyleMap&>(*result);
  for (const StyleStateMode mode : {kStyleNormal, kStyleHighlight}) {
    const RefPtr<StyleSelector> look = FlattenLook(mode, other, entered);
    if (look)
      map.AddPair(mode, static_cast<Style&>(*look));
    else
      const RefPtr<Pair> empty(new Pair(GetKeyOf(mode), map));
  }
  return RefPtr<StyleSelector>(&map);
}

void StyleMap::InternalCollectStyles(WriteState& state) const {
  state.AddStyle(*this);
  CollectReferences(state, false);
}

void StyleMap::accept(StyleVisitor& visitor) { visitor.visit(*this); }

void StyleMap::CollectReferences(WriteState& state, bool isInPlace) const {
  struct Step {
    const StyleMap* map;
    bool isInPlace;
    std::size_t next; ///< Of its pairs.
  };
  const Field& ownField = StyleMapPairSchema::GetSingleton().styleSelector;
  StyleHoist& hoist = state.hoist();
  mmvector<Step> open{{this, isInPlace, 0}};
  while (!open.empty()) {
    const Step step = open.back();
    if (step.next == step.map->pairs_.size()) {
      open.pop_back();
      continue;
    }
    ++open.back().next;
    const Pair* pair = step.map->pairs_[step.next].get();
    if (!pair)
      continue;
    if (const KeptField* kept = pair->GetKeptField(ownField)) {
      for (const KeptValue& former : kept->displaced) {
        hoist.AddInPlace(static_cast<const StyleSelector&>(*former.object),
                         StyleHoist::Place::kInline);
        if (const StyleMap* map = As(former.object.get()))
          open.push_back({map, step.isInPlace, 0});
      }
    }
    const StyleSelector* selector = pair->GetInlineStyleSelector();
    const bool isOwn = selector != nullptr;
    if (isOwn) {
      hoist.AddInPlace(*selector, StyleHoist::Place::kInline);
    } else {
      selector = pair->GetReferencedStyleSelector();
      if (!hoist.AddReference(*pair, pair->GetStyleUrl(), selector, step.isInPlace))
        continue;
      state.AddStyle(*selector);
    }
    if (const StyleMap* map = As(selector))
      open.push_back({map, isOwn && step.isInPlace, 0});
  }
}

} // namespace vorrel::kestan
