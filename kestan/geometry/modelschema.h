#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/phantomfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/location.h"
#include "kestan/geometry/model.h"
#include "kestan/geometry/orientation.h"
#include "kestan/geometry/resourcemap.h"
#include "kestan/geometry/scale.h"
#include "kestan/link/link.h"

namespace vorrel::kestan {

/// A part that the model makes for itself: in a document's model it's written once it says
/// something.
template <class T> class ModelPartField final : public ObjField<T> {
public:
  ModelPartField(Schema& schema, unsigned offset)
      : ObjField<T>(schema, "", T::GetClassSchema(), offset) {}

  void WriteKml(const SchemaObject& object, WriteState& state) const override {
    if (!Model::IsMadeUp(object, this->GetObject(object, -1)))
      ObjField<T>::WriteKml(object, state);
  }
};

class KESTAN_EXPORT ModelSchema final : public SchemaT<Model, NewInstancePolicy, NoDerivedPolicy> {
public:
  ModelSchema();

  ModelPartField<Location> location{*this, OffsetOf(&Model::location_)};
  ModelPartField<Orientation> orientation{*this, OffsetOf(&Model::orientation_)};
  ModelPartField<Scale> scale{*this, OffsetOf(&Model::scale_)};
  ModelPartField<Link> link{*this, OffsetOf(&Model::link_)};
  ObjField<ResourceMap> resourceMap{*this, "", ResourceMap::GetClassSchema(),
                                    OffsetOf(&Model::resourceMap_)};
  PhantomField fetchState{*this, "fetchState"}; ///< The fetch of the model's file went on.
};

extern template class SchemaT<Model, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
