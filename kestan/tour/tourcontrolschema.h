#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/schemat.h"
#include "kestan/tour/tourcontrol.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TourControlSchema final
    : public SchemaT<TourControl, NewInstancePolicy, NoDerivedPolicy> {
private:
  Enum actions_; // the field refers to it, so that it comes first

public:
  TourControlSchema();

  EnumField playMode{
      *this, "playMode", actions_, kTourPause, OffsetOf(&TourControl::playMode_), Field::kElement};
};

extern template class SchemaT<TourControl, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
