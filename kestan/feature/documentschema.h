#pragma once

#include "kestan/core/objarrayfield.h"
#include "kestan/core/schemat.h"
#include "kestan/feature/document.h"

namespace vorrel::kestan {

/// The shared styles of a document. One without an id can't be referred to: it becomes the
/// document's own inline style instead.
class KESTAN_EXPORT SharedStylesField final : public ObjArrayField<StyleSelector> {
public:
  using ObjArrayField::ObjArrayField;

  bool set(SchemaObject& owner, SchemaObject* child, int index) const override;
  bool insert(SchemaObject& owner, SchemaObject* child, int index) const override;
  int AddMultiple(SchemaObject* owner,
                  const ArraySlice<RefPtr<SchemaObject>>& children) const override;
  const Field& GetPlaceFor(const SchemaObject& child) const override;

private:
  static bool IsAnonymous(const SchemaObject* style);
  static bool TakeInline(SchemaObject& document, SchemaObject& style);
};

class KESTAN_EXPORT DocumentSchema final
    : public SchemaT<Document, NewInstancePolicy, NoDerivedPolicy> {
public:
  DocumentSchema();

  // Initialised by the constructor, since the classes lie above this folder.
  SharedStylesField styleSelectors;
  ObjArrayField<CustomSchema> schemas;
};

extern template class SchemaT<Document, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
