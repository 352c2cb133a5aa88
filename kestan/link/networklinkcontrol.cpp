#include "kestan/link/networklinkcontrol.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/link/networklinkcontrolschema.h"
#include "kestan/update/mainthreadstay.h"
#include "kestan/update/update.h"

namespace vorrel::kestan {

template class SchemaT<NetworkLinkControl, NewInstancePolicy, NoDerivedPolicy>;
template class ObjField<NetworkLinkControl>;

NetworkLinkControlSchema::NetworkLinkControlSchema()
    : SchemaT("NetworkLinkControl", nullptr, Namespace::kKml),
      updates(*this, QString(), Update::GetClassSchema(), OffsetOf(&NetworkLinkControl::updates_)) {
}

const Schema& NetworkLinkControl::GetClassSchema() {
  return NetworkLinkControlSchema::GetSingleton();
}

NetworkLinkControl::NetworkLinkControl(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

NetworkLinkControl::~NetworkLinkControl() { NotifyPreDelete(); }

/// An update may remove anything, the control and its other updates included.
template <class Operation>
void NetworkLinkControl::ForEachUpdate(ThreadScope* scope, Operation operation) {
  const MainThreadStay stay(scope);
  const DeletionDeferrer deferrer;
  for (const RefPtr<Update>& update : mmvector<RefPtr<Update>>(updates_)) {
    if (update)
      operation(*update);
  }
}

void NetworkLinkControl::ApplyUpdates(ThreadScope* scope) {
  ForEachUpdate(scope, [scope](Update& update) { update.Apply(scope, 1.0F); });
}

void NetworkLinkControl::UndoUpdates(ThreadScope*) {
  ForEachUpdate(nullptr, [](Update& update) { update.ApplyEdits(0.0F); });
}

} // namespace vorrel::kestan
