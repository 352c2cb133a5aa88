#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/overlay/groundoverlay.h"
#include "kestan/spacetime/abstractxform.h"

namespace vorrel::kestan {

class KESTAN_EXPORT GroundOverlaySchema final
    : public SchemaT<GroundOverlay, NewInstancePolicy, NoDerivedPolicy> {
public:
  GroundOverlaySchema();

  SimpleField<double> altitude{*this, "altitude", OffsetOf(&GroundOverlay::altitude_),
                               Field::kElement};
  AltitudeModeEnumField altitudeMode{*this, kClampToGround, OffsetOf(&GroundOverlay::altitudeMode_),
                                     false};
  AltitudeModeEnumField extAltitudeMode{*this, kClampToGround,
                                        OffsetOf(&GroundOverlay::altitudeMode_), true};
  ObjField<AbstractXform> xform{*this, QString(), AbstractXform::GetClassSchema(),
                                OffsetOf(&GroundOverlay::xform_)};
};

extern template class SchemaT<GroundOverlay, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
