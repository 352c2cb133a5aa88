#pragma once

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemaobject.h"
#include "kestan/host/inlinedvector.h"
#include "kestan/host/refptr.h"

namespace vorrel::kestan {

/// One change of places: children that come, and children that go.
///
/// First every place is changed, on both sides; then everybody is told, since who is told may
/// change all of it again. Those that went hear of it first; then, for each that came, the field
/// that it has left, and the child itself.
class KESTAN_EXPORT ChildMove {
public:
  /// Takes a child that comes out of the place where it stands, whoever owns that.
  void Take(SchemaObject& child);
  /// `child` takes the place that `owner` has made for it.
  static void Enter(SchemaObject& child, SchemaObject& owner, int index) {
    child.EnterPlace(owner, index);
  }
  /// The whole of a move for a child that stands nowhere yet, which is what readers bring: its
  /// place in `owner` has been free, so that nobody else has to be told.
  static void Settle(SchemaObject& child, SchemaObject& owner, int index) {
    const DeletionDeferrer deferrer;
    Enter(child, owner, index);
    child.NotifyOwnerChanged();
  }
  /// `child` has lost its place in `owner`, and goes unless somebody else holds it.
  void LetGo(RefPtr<SchemaObject> child, SchemaObject& owner);
  /// The notices. Nothing that was known ahead of them holds behind them.
  void Tell();

private:
  struct Arrival {
    SchemaObject* child = nullptr;
    RefPtr<SchemaObject> kept{}; // the former place may hold the only reference
    SchemaObject* formerOwner = nullptr;
    const Field* formerField = nullptr;
  };

  const DeletionDeferrer deferrer_;
  InlinedVector<RefPtr<SchemaObject>, 2> gone_;
  InlinedVector<Arrival, 2> arrivals_;
};

} // namespace vorrel::kestan
