#include "kestan/update/removals.h"

#include "kestan/feature/abstractfolder.h" // features leave it

#include <utility>

namespace vorrel::kestan {

Removals::Removals() = default;

Removals::~Removals() { RemoveAll(); }

void Removals::Add(AbstractFeature& feature) {
  AbstractFolder* const folder = feature.GetParent();
  if (!folder)
    return;
  const auto [place, isNew] = places_.try_emplace(folder, groups_.size());
  if (isNew)
    groups_.push_back({RefPtr<AbstractFolder>(folder), {}});
  groups_[place->second].features.emplace_back(&feature);
  removed_.insert(&feature);
}

bool Removals::Contains(const SchemaObject& object) const {
  if (groups_.empty())
    return false;
  for (const SchemaObject* at = &object; at; at = at->GetHome()) {
    if (removed_.contains(at))
      return true;
  }
  return false;
}

void Removals::RemoveFrom(AbstractFolder& folder) {
  const auto place = places_.find(&folder);
  if (place == places_.end())
    return;
  Group& group = groups_[place->second];
  for (const RefPtr<AbstractFeature>& feature : group.features)
    removed_.erase(feature.get());
  Remove({group.folder, std::exchange(group.features, {})});
}

void Removals::RemoveAll() {
  mmvector<Group> groups = std::exchange(groups_, {});
  places_.clear();
  removed_ = {};
  for (Group& group : groups)
    Remove(std::move(group));
}

void Removals::Remove(Group group) {
  if (!group.features.empty())
    group.folder->RemoveChildren(group.features);
}

} // namespace vorrel::kestan
