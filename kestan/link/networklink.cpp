#include "kestan/link/networklink.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/enum.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/abstractfolderschema.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/feature/linksnippet.h"
#include "kestan/host/datetime.h"
#include "kestan/host/url.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/link/fetchobserver.h"
#include "kestan/link/linktemplate.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/link/networklinkschema.h"
#include "kestan/read/parsejob.h"
#include "kestan/spacetime/abstractview.h"

#include <algorithm>

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

/// What a link fetches but for the cookie, which may be another one at each fetch.
QString GetDocumentUrl(const NetworkLink& link) {
  const AbstractLink* const address = link.GetLink();
  const QString url = address ? address->GetAbsoluteUrl() : QString();
  return url.left(FindFragment(QString(), url));
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

void NetworkLink::TakeFetched(const ParseJob& job) {
  const DeletionDeferrer deferrer;
  const RefPtr<SchemaObject> result = job.GetResult();
  const RefPtr<NetworkLinkControl> control(
      static_cast<NetworkLinkControl*>(job.GetLinkControl().get()));
  if (control)
    setControl(control.get());
  if (result && result->isOfType(AbstractFeature::GetClassSchema()))
    SetFetched(static_cast<AbstractFeature&>(*result));
  SetFetchState(static_cast<net::FetchState>(job.GetStatus()), job.GetErrorText());
  if (control)
    control->ApplyUpdates(nullptr);
}

void NetworkLink::SetFetched(AbstractFeature& feature) {
  mmvector<RefPtr<AbstractFeature>> former;
  if (rootMode_ != kRootKeep)
    std::copy_if(children_.begin(), children_.end(), std::back_inserter(former),
                 [](const RefPtr<AbstractFeature>& child) {
                   return child && !child->GetBit(kBitLinkContent);
                 });
  RemoveChildren({former.data(), former.size()});
  AddChild(feature);
}

bool NetworkLink::IsEndless() const {
  const QString url = GetDocumentUrl(*this);
  int depth = 0;
  for (const AbstractFeature* above = this; above; above = above->GetParent()) {
    if (!url.isEmpty() && above->GetUrl() == url)
      return true;
    if (above == this || !above->isOfType(GetClassSchema()))
      continue;
    ++depth;
    if (!url.isEmpty() && GetDocumentUrl(static_cast<const NetworkLink&>(*above)) == url)
      return true;
  }
  return depth > kMaxLinkDepth;
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
  if (&field == &AbstractFolderSchema::GetSingleton().children && !children_.empty() &&
      children_.back() && children_.back()->GetBit(kBitBeingRead))
    children_.back()->SetBit(kBitLinkContent, true);
  if (&field == &fields.fetchState)
    FetchObserver::Notify(this, link, fetchState_);
  AbstractFolder::NotifyFieldChanged(field);
}

/// The children of a copy are put together as those of a document are.
void NetworkLink::CopyNonFieldStuff(const SchemaObject& src) {
  if (src.isOfType(GetClassSchema())) {
    const auto& former = static_cast<const NetworkLink&>(src).children_;
    for (std::size_t i = 0; i < std::min(former.size(), children_.size()); ++i) {
      if (former[i] && children_[i])
        children_[i]->SetBit(kBitLinkContent, former[i]->GetBit(kBitLinkContent));
    }
  }
  AbstractFolder::CopyNonFieldStuff(src);
}

/// For the length of `op`, which writes and tells nobody, the link has no children that were
/// fetched.
template <class Op> void NetworkLink::WithoutFetched(Op op) const {
  auto& self = const_cast<NetworkLink&>(*this);
  mmvector<RefPtr<AbstractFeature>> others;
  std::copy_if(
      children_.begin(), children_.end(), std::back_inserter(others),
      [](const RefPtr<AbstractFeature>& child) { return child && child->GetBit(kBitLinkContent); });
  self.children_.swap(others);
  op();
  self.children_.swap(others);
}

void NetworkLink::CollectStylesAndSchemas(WriteState& state) const {
  WithoutFetched([&] { AbstractFolder::CollectStylesAndSchemas(state); });
}

void NetworkLink::WriteKml(WriteState& state) const {
  WithoutFetched([&] { AbstractFolder::WriteKml(state); });
}

void NetworkLink::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
