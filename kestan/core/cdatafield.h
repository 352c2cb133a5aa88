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

} // namespace vorrel::kestan
