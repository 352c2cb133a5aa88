#pragma once

#include "kestan/core/cdatafield.h"

namespace vorrel::kestan {

/// The lower-case `snippet` of a feature, which gives way to a `Snippet` object of older files.
class KESTAN_EXPORT SnippetField final : public CdataField {
public:
  using CdataField::CdataField;

  bool IsUndefined(const SchemaObject& object) const override;
  void copy(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void clone(SchemaObject& dst, const SchemaObject& src, bool deep) const override;
  void merge(SchemaObject& dst, const SchemaObject& a, const SchemaObject& b,
             bool useB) const override;
};

} // namespace vorrel::kestan
