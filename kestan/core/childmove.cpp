#include "kestan/core/childmove.h"

#include <utility>

namespace vorrel::kestan {

void ChildMove::Take(SchemaObject& child) {
  Arrival arrival;
  arrival.child = &child;
  if (SchemaObject* const home = child.GetHome()) {
    arrival.kept = &child;
    arrival.formerOwner = home;
    arrival.formerField = home->Vacate(child);
    child.LeavePlace(*home);
  }
  arrivals_.push_back(std::move(arrival));
}

void ChildMove::LetGo(RefPtr<SchemaObject> child, SchemaObject& owner) {
  if (child->GetHome() == &owner) // a field may hold what it doesn't own
    child->LeavePlace(owner);
  gone_.push_back(std::move(child));
}

void ChildMove::Tell() {
  for (RefPtr<SchemaObject>& child : gone_) {
    // Nobody can take hold of it between this look and its end.
    if (child->GetRefCount() > 1 && !child->GetBit(kBitDeleting))
      child->NotifyOwnerChanged();
    child.reset();
  }
  for (const Arrival& arrival : arrivals_) {
    if (arrival.formerField)
      arrival.formerField->NotifyFieldChanged(*arrival.formerOwner);
    if (!arrival.child->GetBit(kBitDeleting))
      arrival.child->NotifyOwnerChanged();
  }
}

} // namespace vorrel::kestan
