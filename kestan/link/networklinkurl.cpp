#include "kestan/link/networklinkurl.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/link/networklinkurlschema.h"

namespace vorrel::kestan {

template class SchemaT<NetworkLink::Url, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<NetworkLink::Url>;

NetworkLinkUrlSchema::NetworkLinkUrlSchema()
    : SchemaT("Url", &AbstractLink::GetClassSchema(), Namespace::kKml) {}

const Schema& NetworkLink::Url::GetClassSchema() { return NetworkLinkUrlSchema::GetSingleton(); }

NetworkLink::Url::Url(const KmlId& id, const QString& baseUrl, bool notify)
    : AbstractLink(GetClassSchema(), id, baseUrl) {
  if (notify)
    NotifyPostCreate();
}

NetworkLink::Url::~Url() { NotifyPreDelete(); }

FromStringResult NetworkLink::Url::fromString(const QString& text) {
  ReadHref(text);
  return FromStringResult::kOk;
}

const Field* NetworkLink::Url::GetTextField() const {
  return &AbstractLinkSchema::GetSingleton().href;
}

} // namespace vorrel::kestan
