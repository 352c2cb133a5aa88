#include "kestan/update/update.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/host/net.h"
#include "kestan/host/system.h"
#include "kestan/update/editedobject.h"
#include "kestan/update/mainthreadstay.h"
#include "kestan/update/updateedit.h"
#include "kestan/update/updatehandler.h"
#include "kestan/update/updateschema.h"

#include <QUrl>

#include <algorithm>

namespace vorrel::kestan {

template class SchemaT<Update, NewInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<SchemaObject>;
template class ObjArrayField<Update>;

namespace {

/// True when both URLs lead to one web server.
bool IsSameServer(const QUrl& a, const QUrl& b) {
  if (a.scheme() != b.scheme() || !net::ServerInfo::IsHttp(a.scheme(), true))
    return false;
  const int usualPort = a.scheme() == QLatin1String("https") ? 443 : 80;
  return a.host() == b.host() && a.port(usualPort) == b.port(usualPort);
}

} // namespace

void EditedObject::OnPreDelete(const PreDeleteEvent&) { update.DeleteEditsOf(*this); }

UpdateSchema::UpdateSchema() : SchemaT("Update", nullptr, Namespace::kKml) {}

const Schema& Update::GetClassSchema() { return UpdateSchema::GetSingleton(); }

Update::Update(const KmlId& id, const QString& baseUrl) : Update(QString(), id, baseUrl) {}

Update::Update(const QString& rawHref, const KmlId& id, const QString& baseUrl)
    : SchemaObject(GetClassSchema(), id, baseUrl), Timer("Update"), rawTargetHref_(rawHref) {
  NotifyPostCreate();
}

Update::~Update() { NotifyPreDelete(); }

/// It dies: nothing may come of its edits any more.
void Update::LeaveOwners() {
  Stop();
  DeleteAllEdits();
}

void Update::SetTargetHref(const QString& href, const QString& rawHref) {
  const DeletionDeferrer deferrer;
  UpdateSchema::GetSingleton().targetHref.SetTypedObject(*this, href);
  rawTargetHref_ = rawHref;
}

void Update::NotifyFieldChanged(const Field& field) {
  if (field.IsSameMember(UpdateSchema::GetSingleton().targetHref)) {
    hrefDirty_ = true;
    rawTargetHref_ = QString();
  }
  SchemaObject::NotifyFieldChanged(field);
}

void Update::CopyNonFieldStuff(const SchemaObject& src) {
  if (src.isOfType(GetClassSchema()))
    rawTargetHref_ = static_cast<const Update&>(src).rawTargetHref_;
  SchemaObject::CopyNonFieldStuff(src);
}

const QString& Update::GetAbsoluteTargetHref() const {
  if (hrefDirty_) {
    absoluteTargetHref_ = MakeAbsoluteUrl(GetBaseUrl(), targetHref_);
    if (absoluteTargetHref_.isEmpty())
      absoluteTargetHref_ = GetBaseUrl();
    isTrusted_ =
        targetHref_.isEmpty() || IsSameServer(QUrl(absoluteTargetHref_), QUrl(GetBaseUrl()));
    hrefDirty_ = false;
  }
  return absoluteTargetHref_;
}

bool Update::CheckUrlSecurity() const {
  GetAbsoluteTargetHref();
  return isTrusted_;
}

void Update::CreateEdits(ThreadScope* scope) {
  if (!GetBit(kBitDeleting))
    UpdateHandler::ApplyUpdate(*this, scope);
}

void Update::Apply(ThreadScope* scope, float fraction) {
  const MainThreadStay stay(scope);
  const DeletionDeferrer deferrer;
  CreateEdits(scope);
  ApplyEdits(fraction);
}

void Update::ApplyEdits(float fraction) {
  if (!System::IsMainThread()) {
    pendingFraction_ = fraction;
    if (!isPending_.exchange(true))
      ref();
    Start(0.0, true);
    return;
  }
  const DeletionDeferrer deferrer;
  if (isPending_.exchange(false)) {
    Stop(); // that call is older
    unref();
  }
  if (GetEditCount() == 0)
    return;
  ++walks_;
  // Whoever hears of a change may end any edit, also all of them, and make new ones.
  for (std::size_t i = 0, count = edits_.size(); i < count; ++i) {
    if (!edits_[i])
      continue;
    if (fraction <= 0.0F)
      edits_[i]->SetInitialValue();
    else if (fraction >= 1.0F)
      edits_[i]->SetFinalValue();
    else
      edits_[i]->SetInterpolatedValue(fraction);
  }
  --walks_;
  if (!keepEdits_)
    DeleteAllEdits();
  DropGoneEdits();
}

void Update::Fire() { ApplyEdits(pendingFraction_); }

void Update::OnDropped() {
  if (isPending_.exchange(false))
    unref();
}

EditedObject& Update::RequireEdited(SchemaObject& object) {
  std::unique_ptr<EditedObject>& edited = editedObjects_[&object];
  if (!edited)
    edited.reset(new EditedObject(object, *this));
  return *edited;
}

void Update::AddEdit(UpdateEdit& edit) {
  if (goneEdits_ > edits_.size() / 2)
    DropGoneEdits();
  edit.place_ = edits_.size();
  edits_.push_back(&edit);
}

/// Its place stays, so that those of the others do.
void Update::RemoveEdit(UpdateEdit& edit) {
  edits_[edit.place_] = nullptr;
  ++goneEdits_;
}

void Update::DeleteAllEdits() {
  for (std::size_t i = edits_.size(); i-- > 0;)
    delete edits_[i];
  editedObjects_.clear();
  DropGoneEdits();
}

void Update::DeleteEditsOf(EditedObject& edited) {
  while (edited.latest)
    delete edited.latest;
  editedObjects_.erase(&edited.object); // ends it
}

void Update::DropGoneEdits() {
  if (walks_ > 0 || goneEdits_ == 0)
    return;
  edits_.erase(std::remove(edits_.begin(), edits_.end(), nullptr), edits_.end());
  goneEdits_ = 0;
  for (std::size_t i = 0; i < edits_.size(); ++i)
    edits_[i]->place_ = i;
}

} // namespace vorrel::kestan
