#pragma once

#include "kestan/feature/abstractfolder.h"
#include "kestan/host/net.h"

namespace vorrel::kestan {

class AbstractLink;
class Link;
class NetworkLinkControl;
class NetworkLinkSchema;
class ParseJob;

/// A folder whose children come from a URL.
///
/// It holds what to fetch and what came of it. Fetching is for the client, which asks a
/// `FetchPlan` when to do so, and hands over what it got with `TakeFetched`. Children that a
/// client adds count as fetched: only those that stood in the link's own element, or that an update
/// has created in it, are written.
class KESTAN_EXPORT NetworkLink final : public AbstractFolder {
public:
  class Url;

  using ClassSchema = NetworkLinkSchema;
  static const Schema& GetClassSchema();
  NetworkLink(const KmlId& id, const QString& baseUrl);
  ~NetworkLink() override;

  enum InitialRefreshMode { kRefreshOnVisible = 0, kRefreshOnLoad = 1, kRefreshOnOpen = 2 };
  /// What becomes of the children of the last fetch when the next one has come.
  enum RootMode {
    kRootAutoPrune = 0,
    kRootPrune = 1,
    kRootKeep = 2,
    kRootCopy = 3,
    kRootReplace = 4
  };

  /// The `Link`, else the older `Url`; null without either.
  AbstractLink* GetLink() const;
  /// Takes the link in the place of both forms; null takes both away.
  void SetLink(AbstractLink* link);
  /// Sets the reference of the link; nothing happens without one.
  void SetHref(const QString& href);
  /// The URL to fetch, with the cookie that the server has sent; null without a link or reference.
  QString GetAbsoluteUrl() const;
  /// Asks whoever watches the link to fetch it again.
  void refresh();
  void ForceFetch();
  bool GetForceFetch() const { return forceFetch_; }

  /// Takes over what a job has read, once that is merged. The control of the document, if there is
  /// one, is set; the feature takes the place of what was fetched before, or stands behind it with
  /// `kRootKeep`; the fetch state tells how it went; and then the control's updates are applied,
  /// which may remove the link itself. What the document doesn't bring stays as it was: the content
  /// for one of updates only, the control, and so the cookie, for one without.
  void TakeFetched(const ParseJob& job);
  /// True when nobody should follow the link: it leads to a document that it lies in, or lies below
  /// more than `kMaxLinkDepth` others.
  bool IsEndless() const;
  static constexpr int kMaxLinkDepth = 64;

  /// What the server has last said to the link, or null.
  NetworkLinkControl* GetControl() const { return control_.get(); }
  /// Takes over the name, the texts and the view that the control has for the link, and when the
  /// document expires. They're copies: the control stays whole.
  void setControl(NetworkLinkControl* control);

  bool GetRefreshVisibility() const { return refreshVisibility_; }
  void SetRefreshVisibility(bool refresh);
  bool GetFlyToView() const { return flyToView_; }
  void SetFlyToView(bool fly);
  /// Seconds; the older form of the link's refresh mode and interval.
  int GetRefreshPeriod() const { return refreshPeriod_; }
  void SetRefreshPeriod(int seconds);
  int GetInitialRefreshMode() const { return initialRefreshMode_; }
  int GetRootMode() const { return rootMode_; }

  net::FetchState GetFetchState() const { return fetchState_; }
  const QString& GetFetchErrorText() const { return fetchErrorText_; }
  /// The client's report on a fetch; observers of the link, and all of `FetchObserver`, hear of a
  /// change.
  void SetFetchState(net::FetchState state, const QString& text);

  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;
  void CollectStylesAndSchemas(WriteState& state) const override;
  void WriteKml(WriteState& state) const override;
  void accept(FeatureVisitor& visitor) override;

private:
  friend class NetworkLinkSchema;

  void UpdateExpireTime();
  void SetFetched(AbstractFeature& feature);
  template <class Op> void WithoutFetched(Op op) const;

  RefPtr<Url> url_;
  RefPtr<Link> link_;
  bool refreshVisibility_ = false;
  bool flyToView_ = false;
  bool forceFetch_ = false;
  bool hasRefreshPeriod_ = false; // the element that is being read has one
  int refreshPeriod_ = 0;
  QString fetchErrorText_;
  RefPtr<NetworkLinkControl> control_;
  net::FetchState fetchState_ = net::kFetchNone;
  int initialRefreshMode_ = kRefreshOnVisible;
  int rootMode_ = kRootAutoPrune;
};

} // namespace vorrel::kestan
