#pragma once

#include "kestan/core/strfield.h"

namespace vorrel::kestan {

/// A text that may hold markup, such as a description. Markup is written in a CDATA section, and
/// the sources of its image tags follow the rules of links.
class KESTAN_EXPORT CdataField : public StrField {
public:
  using StrField::StrField;

  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;
};

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
