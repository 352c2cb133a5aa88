#include "kestan/feature/snippetfield.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/feature/abstractfeature.h"

namespace vorrel::kestan {

namespace {

const AbstractFeature* AsFeature(const SchemaObject& object) {
  return object.isOfType(AbstractFeature::GetClassSchema())
             ? static_cast<const AbstractFeature*>(&object)
             : nullptr;
}

} // namespace

bool SnippetField::IsUndefined(const SchemaObject& object) const {
  const AbstractFeature* feature = AsFeature(object);
  return !feature || !feature->HasNewSnippet();
}

void SnippetField::copy(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  const DeletionDeferrer deferrer;
  CdataField::copy(dst, src, deep);
  const AbstractFeature* source = AsFeature(src);
  if (source && AsFeature(dst) && !source->HasNewSnippet())
    dst.SetBit(kBitNewSnippet, false);
}

void SnippetField::clone(SchemaObject& dst, const SchemaObject& src, bool deep) const {
  copy(dst, src, deep);
}

void SnippetField::merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
                         bool useB) const {
  copy(dst, useB ? b : a, false);
}

} // namespace vorrel::kestan
