#include "kestan/spacetime/lod.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/lodschema.h"

namespace vorrel::kestan {

template class SchemaT<Lod, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Lod>;

LodSchema::LodSchema() : SchemaT("Lod", nullptr, Namespace::kKml) {}

const Schema& Lod::GetClassSchema() { return LodSchema::GetSingleton(); }

Lod::Lod(const KmlId& id, const QString& baseUrl) : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

Lod::~Lod() { NotifyPreDelete(); }

void Lod::SetHrefToReplace(const QString& href) {
  LodSchema::GetSingleton().hrefToReplace.CheckSet(*this, href);
}

} // namespace vorrel::kestan
