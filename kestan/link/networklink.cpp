#include "kestan/link/networklink.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/enum.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/abstractfolderschema.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/feature/linksnippet.h"
#include "kestan/host/datetime.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/link/fetchobserver.h"
#include "kestan/link/linktemplate.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/link/networklinkschema.h"
#include "kestan/spacetime/abstractview.h"

namespace vorrel::kestan {

template class SchemaT<NetworkLink, NewInstancePolicy, NoDerivedPolicy>;

namespace {

const NetworkLinkSchema& Fields() { return NetworkLinkSchema::GetSingleton(); }

/// The snippet as an object of a feature: the control's own class is an element of controls only.
RefPtr<Snippet> CopySnippet(const Snippet& snippet, const SchemaObject& feature) {
  RefPtr<Snippet> copy(new Snippet(KmlId(QString(), feature.GetUrl()), feature.GetBaseUrl()));
  copy->SetMaxLines(snippet.GetMaxLines());
  copy->SetText(snippet.GetText());
  return copy;
}

} // namespace

NetworkLinkSchema::NetworkLinkSchema()
    : SchemaT("NetworkLink", &AbstractFolder::GetClassSchema(), Namespace::kKml) {
  refreshVisibility.SetDefault(false);
  flyToView.SetDefault(false);
  forceFetch.SetDefault(false);
}

Enum& NetworkLinkSchema::InitialRefreshModes() {
  static Enum modes({{NetworkLink::kRefreshOnVisible, "onVisible"},
                     {NetworkLink::kRefreshOnLoad, "onLoad"},
                     {NetworkLink::kRefreshOnOpen, "onOpen"}},
                    false);
  return modes;
}

Enum& NetworkLinkSchema::RootModes() {
  static Enum modes({{NetworkLink::kRootAutoPrune, "autoPrune"},
                     {NetworkLink::kRootPrune, "prune"},
                     {NetworkLink::kRootKeep, "keep"},
                     {NetworkLink::kRootCopy, "copy"},
                     {NetworkLink::kRootReplace, "replace"}},
                    false);
  return modes;
}

const Schema& NetworkLink::GetClassSchema() { return NetworkLinkSchema::GetSingleton(); }

NetworkLink::NetworkLink(const KmlId& id, const QString& baseUrl)
    : AbstractFolder(GetClassSchema(), id, baseUrl) {
  NotifyPostCreate();
}

NetworkLink::~NetworkLink() { NotifyPreDelete(); }

AbstractLink* NetworkLink::GetLink() const {
  if (link_)
    return link_.get();
  return url_.get();
}

void NetworkLink::SetLink(AbstractLink* link) {
  const DeletionDeferrer deferrer;
  const bool isUrl = link && &link->GetSchema() == &Url::GetClassSchema();
  if (!link) {
    Fields().link.set(*this, nullptr, -1);
    Fields().url.set(*this, nullptr, -1);
  } else if (isUrl && Fields().url.Accepts(*this, *link)) {
    Fields().link.Replace(*this, nullptr);
    Fields().url.set(*this, link, -1);
  } else if (!isUrl && Fields().link.Accepts(*this, *link)) {
    Fields().url.Replace(*this, nullptr);
    Fields().link.set(*this, link, -1);
  }
  UpdateExpireTime();
}

void NetworkLink::SetHref(const QString& href) {
  if (AbstractLink* const link = GetLink())
    link->SetHref(href);
}

QString NetworkLink::GetAbsoluteUrl() const {
  const AbstractLink* const link = GetLink();
  const QString url = link ? link->GetAbsoluteUrl() : QString();
  if (url.isEmpty())
    return QString();
  const QString cookie = control_ ? control_->GetCookie() : QString();
  return AppendQuery(url, cookie);
}

void NetworkLink::refresh() {
  if (AbstractLink* const link = GetLink())
    link->refresh();
}

void NetworkLink::ForceFetch() { Fields().forceFetch.SetTypedObject(*this, true); }

void NetworkLink::setControl(NetworkLinkControl* control) {
  if (control_.get() == control)
    return;
  const DeletionDeferrer deferrer;
  control_ = control;
  if (!control)
    return;
  const RefPtr<NetworkLinkControl> kept(control); // an observer may send for another one
  const AbstractFeatureSchema& fields = AbstractFeatureSchema::GetSingleton();
  if (!control->GetLinkName().isEmpty())
    SetName(control->GetLinkName());
  if (const LinkSnippet* const snippet = control->GetLinkSnippet())
    SetSnippetObject(CopySnippet(*snippet, *this).get());
  if (!control->GetLinkDescription().isEmpty())
    fields.description.SetTypedObject(*this, control->GetLinkDescription());
  if (const AbstractView* const view = control->GetAbstractView())
    fields.abstractView.set(*this, view->clone(KmlId(QString(), GetUrl()), true, nullptr).get(),
                            -1);
  UpdateExpireTime();
}

/// On the client's clock, which is what it compares with.
void NetworkLink::UpdateExpireTime() {
  AbstractLink* const link = GetLink();
  if (link && control_ && !control_->GetExpires().isUndefined())
    AbstractLinkSchema::GetSingleton().expireTime.SetTypedObject(
        *link, control_->GetExpires().ToCurrentTime());
}

void NetworkLink::SetRefreshVisibility(bool refresh) {
  Fields().refreshVisibility.CheckSet(*this, refresh);
}

void NetworkLink::SetFlyToView(bool fly) { Fields().flyToView.CheckSet(*this, fly); }

void NetworkLink::SetRefreshPeriod(int seconds) {
  if (seconds == refreshPeriod_)
    return;
  refreshPeriod_ = seconds;
  Fields().refreshPeriod.NotifyFieldChanged(*this);
}

void NetworkLink::SetFetchState(net::FetchState state, const QString& text) {
  if (state == fetchState_ && text == fetchErrorText_)
    return;
  fetchState_ = state;
  fetchErrorText_ = text;
  Fields().fetchState.NotifyFieldChanged(*this);
}

void NetworkLink::NotifyFieldChanged(const Field& field) {
  const DeletionDeferrer deferrer;
  const NetworkLinkSchema& fields = Fields();
  AbstractLink* const link = GetLink();
  if (link)
    link->SetEmbedInKmz(false); // what it leads to isn't part of the document
  const bool isPeriod = &field == &fields.refreshPeriod;
  hasRefreshPeriod_ = (hasRefreshPeriod_ || isPeriod) && GetBit(kBitBeingRead);
  // In a document the period means the same ahead of the link and behind it.
  const bool isLateLink = hasRefreshPeriod_ && (&field == &fields.link || &field == &fields.url);
  if (link && (isPeriod || isLateLink))
    link->SetDeprecatedRefreshPeriod(refreshPeriod_);
  if (&field == &fields.fetchState)
    FetchObserver::Notify(this, link, fetchState_);
  AbstractFolder::NotifyFieldChanged(field);
}

/// What was fetched isn't written, so that the document holds nothing for it.
void NetworkLink::CollectStylesAndSchemas(WriteState& state) const {
  AbstractFeature::CollectStylesAndSchemas(state);
}

void NetworkLink::WriteKml(WriteState& state) const {
  UpdateOldSnippet();
  WriteKmlStartTag(state, false);
  for (const Field* const field : GetSchema().GetSerializedFields()) {
    if (field != &AbstractFolderSchema::GetSingleton().children)
      WriteField(*field, state);
  }
  WriteUnknownFields(state);
  WriteKmlEndTag(state, false);
}

void NetworkLink::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
