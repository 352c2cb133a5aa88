#pragma once

#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"

#include <cstddef>
#include <functional>

namespace fuzz {

/// A number below the argument, and an object of a class or null.
using PickNumber = std::function<unsigned(std::size_t)>;
using PickObject = std::function<vorrel::kestan::SchemaObject*(const vorrel::kestan::Schema&)>;

/// Calls some operation that a class has beside its fields, on some object.
void RunClassOperation(const PickNumber& number, const PickObject& object);

/// Reads what an object keeps of others, so that it's seen when one of them has gone.
void CheckState(const vorrel::kestan::SchemaObject& object);

} // namespace fuzz
