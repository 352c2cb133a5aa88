#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/simplearrayfield.h"
#include "kestan/core/strfield.h"
#include "tests/write/sample.h"

namespace vorrel::kestan {

class SampleSchema final : public SchemaT<Sample, NewInstancePolicy, NoDerivedPolicy> {
public:
  SampleSchema();

  StrField label{*this, "label", OffsetOf(&Sample::label_), Field::kAttribute};
  StrField note{*this, "note", OffsetOf(&Sample::note_), Field::kAttribute, Field::kKmlNamespace};
  HrefStrField reference{*this,           "reference", OffsetOf(&Sample::reference_),
                         Field::kElement, 0,           OffsetOf(&Sample::raw_)};
  SimpleField<int> secret{*this, "secret", OffsetOf(&Sample::secret_), Field::kElement,
                          Field::kNoWrite};
  Vec3fArrayField angles{*this, "angles", OffsetOf(&Sample::angles_), Field::kElement};
  ObjField<Sample> part{*this, "part", *this, OffsetOf(&Sample::part_)};
};

} // namespace vorrel::kestan
