#pragma once

#include "kestan/core/keptvalues.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

/// Calls `visit(SchemaObject&)` for each child that the object holds: those in its fields, and then
/// those that were displaced from them. Nothing may come or go meanwhile.
template <class Visit> void ForEachChild(const SchemaObject& object, Visit visit) {
  for (const Field* field : object.GetSchema().GetObjectFields()) {
    if (field->HasFlag(Field::kNoWrite)) // may refer to what lies above
      continue;
    for (int i = 0, count = field->IsArray() ? field->getCount(object) : 1; i < count; ++i) {
      if (SchemaObject* const child = field->GetObject(object, i))
        visit(*child);
    }
  }
  if (!object.HasKeptValues())
    return;
  for (const KeptField& kept : object.GetUnknownData()->kept->GetFields()) {
    for (const KeptValue& value : kept.displaced) {
      if (value.object)
        visit(*value.object);
    }
  }
}

} // namespace vorrel::kestan
