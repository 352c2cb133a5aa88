#include "kestan/style/styleclimbbatch.h"

#include "kestan/core/schema.h"
#include "kestan/style/styleclimb.h"
#include "kestan/style/styleselector.h"

namespace vorrel::kestan {

namespace {

/// So many owners are told one by one. No document of use comes near it.
constexpr std::size_t kBudget = std::size_t{1} << 22;

thread_local StyleClimbBatch* t_outermost = nullptr;

} // namespace

StyleClimbBatch::StyleClimbBatch() : outer_(t_outermost) {
  if (!outer_)
    t_outermost = this;
}

StyleClimbBatch::~StyleClimbBatch() {
  if (outer_)
    return;
  t_outermost = nullptr;
  if (taken_.empty())
    return;
  // One climb for all, since they may lead to the same owners.
  StyleSelector& first = *taken_.front();
  VisitedObjects visited;
  StyleClimb climb(first, *first.GetSchema().GetObjectFields().front(), visited);
  for (const RefPtr<StyleSelector>& selector : taken_)
    climb.Add(*selector);
  climb.Run();
}

bool StyleClimbBatch::Takes(StyleSelector& selector) {
  // One that is built or dies can't be kept until then.
  if (!t_outermost || selector.GetRefCount() <= 0)
    return false;
  t_outermost->told_ += static_cast<std::size_t>(selector.GetOwnerCount());
  if (t_outermost->told_ <= kBudget)
    return false;
  if (t_outermost->known_.insert(&selector).second)
    t_outermost->taken_.emplace_back(&selector);
  return true;
}

} // namespace vorrel::kestan
