#pragma once

#include "kestan/core/altitudemodeenumfield.h"
#include "kestan/core/bitfield.h"
#include "kestan/core/experimentalfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/geometry/geometry.h"

namespace vorrel::kestan {

class KESTAN_EXPORT GeometrySchema final
    : public SchemaT<Geometry, NoInstancePolicy, NoDerivedPolicy> {
public:
  GeometrySchema();

  BitField extrude{*this,          "extrude", kBitExtrude, false, SchemaObject::GetBitsOffset(),
                   Field::kElement};
  BitField tessellate{
      *this, "tessellate", kBitTessellate, false, SchemaObject::GetBitsOffset(), Field::kElement};
  AltitudeModeEnumField altitudeMode{*this, kClampToGround, OffsetOf(&Geometry::altitudeMode_),
                                     false};
  AltitudeModeEnumField extAltitudeMode{*this, kClampToGround, OffsetOf(&Geometry::altitudeMode_),
                                        true};
  ExperimentalField<StrField> name{*this, "name", OffsetOf(&Geometry::name_),
                                   GetExperimentalOverrideField(*this, Field::kElement),
                                   Field::kExtNamespace};
  SimpleField<int> drawOrder{*this, "drawOrder", OffsetOf(&Geometry::drawOrder_), Field::kElement,
                             Field::kExtNamespace};
  PhantomField feature{*this, "feature"};       ///< The owning feature has changed.
  PhantomField bound{*this, "bound"};           ///< The box has changed.
  PhantomField altBound{*this, "altBound"};     ///< Altitudes have changed.
  PhantomField selection{*this, "selection"};   ///< Another position is selected.
  PhantomField visibility{*this, "visibility"}; ///< The inherited visibility has changed.
  PhantomField region{*this, "region"};         ///< The inherited region has changed.
};

extern template class SchemaT<Geometry, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
