#include "kestan/spacetime/viewvolume.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/viewvolumeschema.h"

namespace vorrel::kestan {

template class SchemaT<ViewVolume, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<ViewVolume>;

ViewVolumeSchema::ViewVolumeSchema() : SchemaT("ViewVolume", nullptr, Namespace::kKml) {
  for (SimpleField<float>* field : {&leftFov, &rightFov, &bottomFov, &topFov, &nearDistance})
    field->SetDefault(0.0F);
}

const Schema& ViewVolume::GetClassSchema() { return ViewVolumeSchema::GetSingleton(); }

ViewVolume::ViewVolume(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

ViewVolume::~ViewVolume() { NotifyPreDelete(); }

RefPtr<ViewVolume> ViewVolume::CreateImplied() {
  const RefPtr<ViewVolume> volume(new ViewVolume(KmlId(), QString()));
  volume->isImplied_ = true;
  return volume;
}

bool ViewVolume::equals(const ViewVolume& other) const {
  return leftFov_ == other.leftFov_ && rightFov_ == other.rightFov_ &&
         bottomFov_ == other.bottomFov_ && topFov_ == other.topFov_ && near_ == other.near_;
}

void ViewVolume::NotifyFieldChanged(const Field& field) {
  isImplied_ = false;
  SchemaObject::NotifyFieldChanged(field);
}

void ViewVolume::CopyNonFieldStuff(const SchemaObject& src) {
  if (src.isOfType(GetClassSchema()))
    isImplied_ = static_cast<const ViewVolume&>(src).isImplied_;
  SchemaObject::CopyNonFieldStuff(src);
}

void ViewVolume::WriteKml(WriteState& state) const {
  if (!isImplied_ || HasUnknownData())
    SchemaObject::WriteKml(state);
}

} // namespace vorrel::kestan
