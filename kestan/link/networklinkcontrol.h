#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/datetime.h"

namespace vorrel::kestan {

class AbstractView;
class LinkSnippet;
class NetworkLinkControlSchema;
class ThreadScope;
class Update;

/// What a server says to the network link that fetched a document: how often it may come again,
/// with what cookie, how it's to be called, and what has changed in documents that it fetched
/// before.
///
/// Periods and times aren't enforced here: they're for the client, which plans the fetches.
class KESTAN_EXPORT NetworkLinkControl final : public SchemaObject {
public:
  using ClassSchema = NetworkLinkControlSchema;
  static const Schema& GetClassSchema();
  NetworkLinkControl(const KmlId& id, const QString& baseUrl);
  ~NetworkLinkControl() override;

  /// The least number of seconds between two fetches.
  float GetMinRefreshPeriod() const { return minRefreshPeriod_; }
  void SetMinRefreshPeriod(float seconds);
  /// How many seconds the link may be used; any number of them unless it's positive.
  float GetMaxSessionLength() const { return maxSessionLength_; }
  /// Goes into the query of each fetch that follows, as it stands.
  const QString& GetCookie() const { return cookie_; }
  void SetCookie(const QString& cookie);
  /// To be shown to the user once.
  const QString& GetMessage() const { return message_; }
  void SetMessage(const QString& message);
  const QString& GetLinkName() const { return linkName_; }
  LinkSnippet* GetLinkSnippet() const { return linkSnippet_.get(); }
  const QString& GetLinkDescription() const { return linkDescription_; }
  /// When the document has to be fetched anew; an undefined time for never.
  const DateTime& GetExpires() const { return expires_; }
  /// Changes to documents that came earlier, in the order of the control.
  const mmvector<RefPtr<Update>>& GetUpdates() const { return updates_; }
  /// Applies each update as a whole, in order. `scope` as in `Update::CreateEdits`.
  void ApplyUpdates(ThreadScope* scope);
  /// Takes back, in order, what the edits of the updates have changed; nothing for updates that
  /// don't keep theirs.
  void UndoUpdates(ThreadScope* scope);
  AbstractView* GetAbstractView() const { return abstractView_.get(); }
  void SetAbstractView(AbstractView* view);

private:
  friend class NetworkLinkControlSchema;

  template <class Operation> void ForEachUpdate(ThreadScope* scope, Operation operation);

  float minRefreshPeriod_ = 0.0F;
  float maxSessionLength_ = -1.0F;
  QString cookie_;
  QString message_;
  QString linkName_;
  RefPtr<LinkSnippet> linkSnippet_;
  QString linkDescription_;
  DateTime expires_;
  mmvector<RefPtr<Update>> updates_;
  RefPtr<AbstractView> abstractView_;
};

} // namespace vorrel::kestan
