#include "kestan/link/networklink.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/link/networklinkschema.h"

namespace vorrel::kestan {

template class SchemaT<NetworkLink, NoInstancePolicy, NoDerivedPolicy>;

NetworkLinkSchema::NetworkLinkSchema()
    : SchemaT("NetworkLink", &AbstractFolder::GetClassSchema(), Namespace::kKml) {}

const Schema& NetworkLink::GetClassSchema() { return NetworkLinkSchema::GetSingleton(); }

NetworkLink::NetworkLink(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractFolder(schema, id, baseUrl) {}

NetworkLink::~NetworkLink() = default;

void NetworkLink::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
