#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/simplefield.h"
#include "kestan/spacetime/viewvolume.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ViewVolumeSchema final
    : public SchemaT<ViewVolume, NewInstancePolicy, NoDerivedPolicy> {
public:
  ViewVolumeSchema();

  SimpleField<float> leftFov{*this, "leftFov", OffsetOf(&ViewVolume::leftFov_), Field::kElement};
  SimpleField<float> rightFov{*this, "rightFov", OffsetOf(&ViewVolume::rightFov_), Field::kElement};
  SimpleField<float> bottomFov{*this, "bottomFov", OffsetOf(&ViewVolume::bottomFov_),
                               Field::kElement};
  SimpleField<float> topFov{*this, "topFov", OffsetOf(&ViewVolume::topFov_), Field::kElement};
  SimpleField<float> nearDistance{*this, "near", OffsetOf(&ViewVolume::near_), Field::kElement};
};

extern template class SchemaT<ViewVolume, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
