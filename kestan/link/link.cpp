#include "kestan/link/link.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/link/linkschema.h"

namespace vorrel::kestan {

template class SchemaT<Link, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<Link>;

LinkSchema::LinkSchema() : SchemaT("Link", &AbstractLink::GetClassSchema(), Namespace::kKml) {}

const Schema& Link::GetClassSchema() { return LinkSchema::GetSingleton(); }

Link::Link(const KmlId& id, const QString& baseUrl, bool notify)
    : AbstractLink(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

Link::~Link() { NotifyPreDelete(); }

} // namespace vorrel::kestan
