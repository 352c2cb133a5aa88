#include "kestan/core/deletiondeferrer.h"

#include "kestan/core/schemaobject.h"

#include <utility>

namespace vorrel::kestan {

__thread DeletionDeferrer::State DeletionDeferrer::s_state_ = {0, nullptr};

void DeletionDeferrer::Add(SchemaObject& object) {
  if (object.GetBit(kBitOrphaned))
    return; // in the list already
  object.SetBit(kBitOrphaned, true);
  object.SetSpareLink(std::exchange(s_state_.dead, &object));
}

/// One by one: the children of what goes join the list, so that no nesting overflows the stack.
void DeletionDeferrer::FreeDead() {
  while (SchemaObject* const object = s_state_.dead) {
    s_state_.dead = object->GetSpareLink();
    object->SetSpareLink(nullptr);
    if (object->GetRefCount() == 0)
      delete object;
    else
      object->SetBit(kBitOrphaned, false); // goes with the reference that somebody took to it
  }
}

} // namespace vorrel::kestan
