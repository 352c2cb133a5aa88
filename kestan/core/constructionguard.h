#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

/// Holds an object that sends notices while it's built. Nobody counts it yet: references that are
/// taken and given back meanwhile mustn't end it, also not the one of a field that has taken it.
class ConstructionGuard {
public:
  explicit ConstructionGuard(SchemaObject& object) : ConstructionGuard(object, false) {}
  /// Of an object that `isBuilt` already, a reference as any other.
  ConstructionGuard(SchemaObject& object, bool isBuilt) : object_(object), isBuilt_(isBuilt) {
    object_.ref();
  }
  ConstructionGuard(const ConstructionGuard&) = delete;
  ConstructionGuard& operator=(const ConstructionGuard&) = delete;
  ~ConstructionGuard() {
    if (isBuilt_)
      object_.unref();
    else
      object_.UnrefWithoutDelete();
  }

private:
  SchemaObject& object_;
  const bool isBuilt_;
};

} // namespace vorrel::kestan
