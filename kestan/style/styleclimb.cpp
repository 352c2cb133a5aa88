#include "kestan/style/styleclimb.h"

#include "kestan/core/objectobserver.h"
#include "kestan/style/styleclimbbatch.h"
#include "kestan/style/styleselector.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

/// Styles that depend on each other through more maps than this don't hear of each other.
constexpr int kMaxLevels = 100;

thread_local StyleClimb* t_current = nullptr;

/// Observers may drop a selector. While it's built or dies, nobody counts it.
RefPtr<StyleSelector> Keep(StyleSelector& selector) {
  return selector.GetRefCount() > 0 ? RefPtr<StyleSelector>(&selector) : nullptr;
}

} // namespace

StyleClimb::StyleClimb(SchemaObject& changed, const Field& field, VisitedObjects& visited)
    : changed_(changed), field_(field), visited_(visited), outer_(t_current) {
  t_current = this;
}

StyleClimb::~StyleClimb() { t_current = outer_; }

StyleClimb* StyleClimb::Find(const VisitedObjects& visited) {
  return t_current && &t_current->visited_ == &visited ? t_current : nullptr;
}

void StyleClimb::Add(StyleSelector& selector) {
  if (Contains(selector))
    return;
  if (queue_.size() >= kSmallQueue)
    seen_.insert(&selector);
  queue_.push_back({&selector, Keep(selector)});
}

void StyleClimb::Run() {
  std::size_t levelEnd = queue_.size();
  int level = 0;
  for (std::size_t next = 0; next < queue_.size(); ++next) {
    if (next == levelEnd) {
      if (++level == kMaxLevels)
        return;
      levelEnd = queue_.size();
    }
    TellOwners(*queue_[next].selector);
  }
}

bool StyleClimb::Contains(StyleSelector& selector) const {
  const auto* end = queue_.begin() + std::min(queue_.size(), kSmallQueue);
  return std::any_of(queue_.begin(), end,
                     [&](const Entry& entry) { return entry.selector == &selector; }) ||
         seen_.count(&selector) != 0;
}

void StyleClimb::TellOwners(StyleSelector& selector) {
  if (StyleClimbBatch::Takes(selector))
    return;
  InlinedVector<SchemaObject*, 16> owners;
  for (int i = 0, count = selector.GetOwnerCount(); i < count; ++i)
    owners.push_back(selector.GetOwner(i));
  for (SchemaObject* owner : owners) {
    if (selector.HasOwner(*owner)) // still, after what observers did
      ObjectObserver::NotifySubFieldChanged(*owner, selector, changed_, field_, visited_);
  }
}

} // namespace vorrel::kestan
