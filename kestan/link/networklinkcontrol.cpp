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

namespace {

const NetworkLinkControlSchema& Fields() { return NetworkLinkControlSchema::GetSingleton(); }

} // namespace

NetworkLinkControlSchema::NetworkLinkControlSchema()
    : SchemaT("NetworkLinkControl", nullptr, Namespace::kKml),
      updates(*this, QString(), Update::GetClassSchema(), OffsetOf(&NetworkLinkControl::updates_)) {
  minRefreshPeriod.SetDefault(0.0F);
  maxSessionLength.SetDefault(-1.0F);
}

const Schema& NetworkLinkControl::GetClassSchema() {
  return NetworkLinkControlSchema::GetSingleton();
}

NetworkLinkControl::NetworkLinkControl(const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

NetworkLinkControl::~NetworkLinkControl() { NotifyPreDelete(); }

void NetworkLinkControl::SetMinRefreshPeriod(float seconds) {
  Fields().minRefreshPeriod.CheckSet(*this, seconds);
}

void NetworkLinkControl::SetCookie(const QString& cookie) {
  Fields().cookie.SetTypedObject(*this, cookie);
}

void NetworkLinkControl::SetMessage(const QString& message) {
  Fields().message.SetTypedObject(*this, message);
}

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

void NetworkLinkControl::SetAbstractView(AbstractView* view) {
  Fields().abstractView.CheckSet(*this, view);
}

} // namespace vorrel::kestan
