#include "kestan/link/networklinkcontrol.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/link/networklinkcontrolschema.h"

namespace vorrel::kestan {

template class SchemaT<NetworkLinkControl, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<NetworkLinkControl>;

NetworkLinkControlSchema::NetworkLinkControlSchema()
    : SchemaT("NetworkLinkControl", nullptr, Namespace::kKml) {}

const Schema& NetworkLinkControl::GetClassSchema() {
  return NetworkLinkControlSchema::GetSingleton();
}

NetworkLinkControl::NetworkLinkControl(const Schema& schema, const KmlId& id,
                                       const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

NetworkLinkControl::~NetworkLinkControl() = default;

} // namespace vorrel::kestan
