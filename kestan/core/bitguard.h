#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

/// Sets a bit of an object for the length of a scope.
class BitGuard {
public:
  BitGuard(SchemaObject* object, BitID bit, bool value)
      : object_(object), bit_(bit), former_(object->GetBit(bit)) {
    object_->SetBit(bit_, value);
  }
  BitGuard(const BitGuard&) = delete;
  BitGuard& operator=(const BitGuard&) = delete;
  ~BitGuard() { object_->SetBit(bit_, former_); }

private:
  SchemaObject* object_;
  BitID bit_;
  bool former_;
};

} // namespace vorrel::kestan
