#include "kestan/core/childfield.h"

#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

bool HasChildren(const SchemaObject& object) {
  const auto& fields = object.GetSchema().GetObjectFields();
  return std::any_of(fields.begin(), fields.end(), [&](const Field* field) {
    return field->IsArray() ? field->getCount(object) > 0 : field->GetObject(object, -1) != nullptr;
  });
}

/// True when `object` stands below `above`.
bool IsBelow(const SchemaObject& object, const SchemaObject& above) {
  // Trees are flat. In one that isn't, the way up costs more than a look whether `above` has
  // anything below it at all.
  constexpr int kUsualDepth = 16;
  int level = 0;
  for (const SchemaObject* home = object.GetHome(); home; home = home->GetHome()) {
    if (home == &above)
      return true;
    if (++level == kUsualDepth && !HasChildren(above))
      return false;
  }
  return false;
}

} // namespace

ChildField::ChildField(Schema& schema, const QString& name, const Schema& objSchema,
                       unsigned offset, unsigned flags, unsigned size, unsigned align)
    : Field(schema, name, offset, kObject, GetNamespaceFlags(objSchema, flags), size, align,
            &objSchema),
      objSchema_(&objSchema) {}

bool ChildField::Accepts(const SchemaObject& owner, const SchemaObject& child) const {
  return &child != &owner && !child.GetBit(kBitDeleting) && child.isOfType(*objSchema_) &&
         (!Owns(owner) || !IsBelow(owner, child));
}

bool ChildField::Owns(const SchemaObject& owner) const {
  return !HasFlag(kNoWrite) && !owner.GetBit(kBitDeleting);
}

} // namespace vorrel::kestan
