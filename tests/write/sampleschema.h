#pragma once

#include "kestan/core/altitudemodeenumfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/screenvecfield.h"
#include "kestan/core/simplearrayfield.h"
#include "kestan/core/simplelistfield.h"
#include "kestan/core/strfield.h"
#include "tests/write/sample.h"

namespace vorrel::kestan {

class SampleSchema final : public SchemaT<Sample, NewInstancePolicy, NoDerivedPolicy> {
public:
  SampleSchema();

  StrField label{*this, "label", OffsetOf(&Sample::label_), Field::kAttribute};
  StrField note{*this, "note", OffsetOf(&Sample::note_), Field::kAttribute, Field::kKmlNamespace};
  ScreenVecField spot{*this, "spot", OffsetOf(&Sample::spot_), Field::kElement};
  HrefStrField reference{*this, "reference", OffsetOf(&Sample::reference_), Field::kElement, 0,
                         OffsetOf(&Sample::raw_)};
  SimpleField<int> secret{*this, "secret", OffsetOf(&Sample::secret_), Field::kElement,
                          Field::kNoWrite};
  AltitudeModeEnumField altitudeMode{*this, 0, OffsetOf(&Sample::altitudeMode_), false};
  AltitudeModeEnumField extAltitudeMode{*this, 0, OffsetOf(&Sample::altitudeMode_), true};
  NormLLAArrayField coords{*this, "coord", OffsetOf(&Sample::coords_), Field::kElement};
  Vec3fArrayField angles{*this, "angles", OffsetOf(&Sample::angles_), Field::kElement};
  SimpleListField<QString> words{*this, "words", OffsetOf(&Sample::words_), Field::kElement};
  ObjField<Sample> part{*this, "part", *this, OffsetOf(&Sample::part_)};
};

} // namespace vorrel::kestan
