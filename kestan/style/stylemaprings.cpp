// Maps that keep each other would never go. So a reference of a pair doesn't count where it leads
// back to its own map, nor where that map is a pair's own, and may be part of any other. When the
// last one that counts goes, it's found out whether the target is in use all the same: then the
// reference keeps it from there on, and the ring ends with the use of it.

#include "kestan/style/stylemappair.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vorrel::kestan {

namespace {

/// Searches end after so many pairs. What lies further away counts as a ring, and as not in use.
constexpr int kMaxSearch = 100;

StyleMap::Pair* AsPair(SchemaObject* object) {
  return object && object->isOfType(StyleMap::Pair::GetClassSchema())
             ? static_cast<StyleMap::Pair*>(object)
             : nullptr;
}

template <class T> bool Contains(const mmvector<T>& list, const T& entry) {
  return std::find(list.begin(), list.end(), entry) != list.end();
}

} // namespace

/// This map, and those that its pairs keep. Empty where there are more pairs than `maxPairs`.
mmvector<StyleMap*> StyleMap::FindKeptMaps(int maxPairs) const {
  mmvector<StyleMap*> maps{const_cast<StyleMap*>(this)};
  for (std::size_t i = 0; i < maps.size(); ++i) {
    for (const RefPtr<Pair>& pair : maps[i]->pairs_) {
      if (--maxPairs < 0)
        return {};
      if (!pair)
        continue;
      StyleMap* own = As(pair->inlineSelector_.get());
      StyleMap* kept = pair->reference_.Keeps() ? As(pair->reference_.get()) : nullptr;
      for (StyleMap* next : {own, kept}) {
        if (next && !Contains(maps, next))
          maps.push_back(next);
      }
    }
  }
  return maps;
}

/// True when references that count lead to `other`, or too far to tell.
bool StyleMap::MayKeep(const StyleMap& other) const {
  const mmvector<StyleMap*> maps = FindKeptMaps(kMaxSearch);
  return maps.empty() || Contains(maps, const_cast<StyleMap*>(&other));
}

/// Looks for something else than a pair that keeps this map, or one that keeps it. Answers the last
/// pair on the way; null where that is an owner of this map's own. With `isWanted` the last one
/// needs only to know the map.
StyleMap::Pair* StyleMap::FindUser(bool isWanted, bool* isUsed) const {
  struct Step {
    const StyleMap* map;
    Pair* last;
  };
  mmvector<Step> way{{this, nullptr}};
  int steps = 0;
  *isUsed = false;
  for (std::size_t i = 0; i < way.size(); ++i) {
    const Step step = way[i];
    for (int j = 0, count = step.map->GetOwnerCount(); j < count; ++j) {
      if (++steps > kMaxSearch)
        return nullptr;
      SchemaObject* owner = step.map->GetOwner(j);
      Pair* pair = AsPair(owner);
      if (!pair) {
        *isUsed = true;
        return step.last;
      }
      const StyleMap* next =
          pair->Keeps(*step.map) || (isWanted && !step.last) ? As(pair->GetOwner(0)) : nullptr;
      const auto isKnown = [&](const Step& known) { return known.map == next; };
      if (next && std::none_of(way.begin(), way.end(), isKnown))
        way.push_back({next, step.last ? step.last : pair});
    }
  }
  return nullptr;
}

/// True when it's sure that `other` doesn't keep this map.
bool StyleMap::IsKeptWithout(const StyleMap& other) const {
  mmvector<const StyleMap*> maps{this};
  int steps = 0;
  for (std::size_t i = 0; i < maps.size(); ++i) {
    for (int j = 0, count = maps[i]->GetOwnerCount(); j < count; ++j) {
      const Pair* pair = AsPair(maps[i]->GetOwner(j));
      if (++steps > kMaxSearch)
        return false;
      const StyleMap* next = pair && pair->Keeps(*maps[i]) ? As(pair->GetOwner(0)) : nullptr;
      if (!next)
        continue;
      if (next == &other)
        return false;
      if (!Contains(maps, next))
        maps.push_back(next);
    }
  }
  return true;
}

/// Makes a pair that is in use keep the map, of which nobody else keeps it any more.
bool StyleMap::FindKeeper() {
  if (GetOwnerCount() == 0 || GetBit(kBitOrphaned) || GetBit(kBitDeleting))
    return false;
  bool isUsed = false;
  Pair* pair = FindUser(true, &isUsed);
  const StyleMap* owner = pair && isUsed ? As(pair->GetOwner(0)) : nullptr;
  if (!owner || pair->reference_.get() != this)
    return false;
  if (!owner->IsKeptWithout(*this)) {
    const mmvector<StyleMap*> ring = FindKeptMaps(kMaxSearch);
    if (ring.empty())
      return false;
    for (StyleMap* map : ring)
      map->mayBeInRing_ = true;
    pair->keepsRing_ = true;
  }
  pair->reference_.SetKeeps(true);
  return true;
}

void StyleMap::RemOwner(SchemaObject& former) {
  StyleSelector::RemOwner(former);
  if (mayBeInRing_ && !GetBit(kBitDeleting))
    EndRings();
}

/// An owner of the map has gone: rings through it that nobody uses any more don't keep themselves.
void StyleMap::EndRings() {
  bool isUsed = false;
  FindUser(false, &isUsed);
  if (isUsed)
    return;
  mayBeInRing_ = false;            // unless a pair keeps one anew
  mmvector<RefPtr<StyleMap>> maps; // which may go on the way
  for (StyleMap* map : FindKeptMaps(std::numeric_limits<int>::max()))
    maps.emplace_back(map);
  for (const RefPtr<StyleMap>& map : maps) {
    for (std::size_t i = 0; i < map->pairs_.size(); ++i) {
      const RefPtr<Pair> pair = map->pairs_[i];
      if (pair && std::exchange(pair->keepsRing_, false))
        pair->reference_.SetKeeps(false);
    }
  }
}

bool StyleMap::Pair::Keeps(const StyleMap& map) const {
  return inlineSelector_.get() == &map || (reference_.get() == &map && reference_.Keeps());
}

void StyleMap::Pair::UpdateKeepsReference() {
  const StyleMap* target = As(reference_.get());
  const StyleMap* owner = As(GetOwner(0));
  if (!target || !owner)
    return;
  keepsRing_ = false;
  reference_.SetKeeps(IsBuiltInUrl(styleUrl_) || (!owner->isInline_ && !target->MayKeep(*owner)));
}

} // namespace vorrel::kestan
