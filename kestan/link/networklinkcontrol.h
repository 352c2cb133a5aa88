#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class NetworkLinkControlSchema;
class ThreadScope;
class Update;

/// What a server says to the network link that fetched a document.
class KESTAN_EXPORT NetworkLinkControl final : public SchemaObject {
public:
  using ClassSchema = NetworkLinkControlSchema;
  static const Schema& GetClassSchema();
  NetworkLinkControl(const KmlId& id, const QString& baseUrl);
  ~NetworkLinkControl() override;

  /// Changes to documents that came earlier, in the order of the control.
  const mmvector<RefPtr<Update>>& GetUpdates() const { return updates_; }
  /// Applies each update as a whole, in order. `scope` as in `Update::CreateEdits`.
  void ApplyUpdates(ThreadScope* scope);
  /// Takes back, in order, what the edits of the updates have changed; nothing for updates that
  /// don't keep theirs.
  void UndoUpdates(ThreadScope* scope);

private:
  friend class NetworkLinkControlSchema;

  template <class Operation> void ForEachUpdate(ThreadScope* scope, Operation operation);

  mmvector<RefPtr<Update>> updates_;
};

} // namespace vorrel::kestan
