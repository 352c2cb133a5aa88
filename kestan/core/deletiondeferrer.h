#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

class SchemaObject;

/// Keeps the memory of what dies in its scope until the outermost scope of the thread ends.
///
/// A notice may end any object, also the one that an operation works on. Whoever touches an object
/// behind a notice opens such a scope ahead of it: what has died meanwhile is still whole, only out
/// of everybody's sight. Its end has been announced, it's in no hash, has no owner, no children and
/// no observers, and can't get any (`kBitDeleting`).
class KESTAN_EXPORT DeletionDeferrer {
public:
  DeletionDeferrer() { ++s_state_.depth; }
  DeletionDeferrer(const DeletionDeferrer&) = delete;
  DeletionDeferrer& operator=(const DeletionDeferrer&) = delete;
  ~DeletionDeferrer() {
    if (s_state_.depth == 1 && s_state_.dead)
      FreeDead();
    --s_state_.depth;
  }

private:
  friend class SchemaObject;

  struct State {
    int depth;
    SchemaObject* dead; ///< The latest one; linked by what held them in their hash.
  };

  static void Add(SchemaObject& object);
  static void FreeDead();

  // At a fixed offset from the thread pointer: no call is needed to reach it.
  static __thread State s_state_ __attribute__((tls_model("initial-exec")));
};

} // namespace vorrel::kestan
