#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/region.h"

namespace vorrel::kestan {

/// The box of a region. One that stands in for it isn't written.
class KESTAN_EXPORT RegionBoxField final : public ObjField<LatLonAltBox> {
public:
  using ObjField::ObjField;

  void WriteKml(const SchemaObject& object, WriteState& state) const override;
};

class KESTAN_EXPORT RegionSchema final
    : public SchemaT<Region, NewInstancePolicy, NoDerivedPolicy> {
public:
  RegionSchema();

  RegionBoxField latLonAltBox{*this, QString(), LatLonAltBox::GetClassSchema(),
                              OffsetOf(&Region::latLonAltBox_)};
  ObjField<Lod> lod{*this, QString(), Lod::GetClassSchema(), OffsetOf(&Region::lod_)};
  PhantomField visibility{*this, "visibility"}; ///< The inherited visibility has changed.
  PhantomField active{*this, "active"};
  PhantomField lodOpacity{*this, "lodOpacity"};
};

extern template class SchemaT<Region, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
