#include "kestan/link/tarrowlink.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/link/tarrowlinkschema.h"

namespace vorrel::kestan {

template class SchemaT<TarrowLink, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<TarrowLink>;

TarrowLinkSchema::TarrowLinkSchema() : SchemaT("TarrowLink", nullptr, Namespace::kKml) {}

const Schema& TarrowLink::GetClassSchema() { return TarrowLinkSchema::GetSingleton(); }

TarrowLink::TarrowLink(const KmlId& id, const QString& baseUrl, bool notify)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

TarrowLink::~TarrowLink() { NotifyPreDelete(); }

} // namespace vorrel::kestan
