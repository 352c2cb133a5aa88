#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/tour/soundcue.h"

namespace vorrel::kestan {

class KESTAN_EXPORT SoundCueSchema final
    : public SchemaT<SoundCue, NewInstancePolicy, NoDerivedPolicy> {
public:
  SoundCueSchema();

  StrField href{*this, "href", OffsetOf(&SoundCue::href_), Field::kElement, Field::kKmlNamespace};
  SimpleField<double> delayedStart{*this, "delayedStart", OffsetOf(&SoundCue::delayedStart_),
                                   Field::kElement};
};

extern template class SchemaT<SoundCue, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
