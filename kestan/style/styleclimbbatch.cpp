#include "kestan/style/styleclimbbatch.h"

#include "kestan/core/schema.h"
#include "kestan/style/styleclimb.h"
#include "kestan/style/styleselector.h"

namespace vorrel::kestan {

namespace {

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
  VisitedObjects visited(first.GetRevision());
  StyleClimb climb(first, *first.GetSchema().GetObjectFields().front(), visited);
  for (const RefPtr<StyleSelector>& selector : taken_)
    climb.Add(*selector);
  climb.Run();
}

bool StyleClimbBatch::Takes(StyleSelector& selector) {
  // One that is built or dies can't be kept until then.
  if (!t_outermost || selector.GetRefCount() <= 0)
    return false;
  if (selector.GetOwnerCount() > 0 && t_outermost->known_.insert(&selector).second)
    t_outermost->taken_.emplace_back(&selector);
  return true;
}

} // namespace vorrel::kestan
