#pragma once

#include "kestan/host/export.h"
#include "kestan/host/net.h"
#include "kestan/host/observer.h"

namespace vorrel::kestan {

class AbstractLink;
class SchemaObject;

/// Hears of each change of a fetch that a client reports to an object with a link.
///
/// Thread: observers live, and are told, on the main thread.
class KESTAN_EXPORT FetchObserver : public Observer {
public:
  struct Event {
    SchemaObject* object; ///< That the fetch is for; null where only the link is known.
    AbstractLink* link;   ///< May be null.
    int state;            ///< `net::FetchState`.
  };

  /// Observes from now on; the latest observer is told first.
  FetchObserver();
  virtual ~FetchObserver();

  virtual void OnFetchChanged(const Event& event) = 0;

  static void Notify(SchemaObject* object, AbstractLink* link, int state);
  /// Tells on the main thread, by the pump, that the fetch of a link won't go on. From any thread.
  static void NotifyCancelled(AbstractLink* link);
};

} // namespace vorrel::kestan
