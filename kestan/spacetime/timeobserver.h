#pragma once

#include "kestan/host/export.h"
#include "kestan/host/observer.h"

namespace vorrel::kestan {

/// Is told on the main thread when the chosen range of time has changed, or any time in a document.
class KESTAN_EXPORT TimeObserver : public Observer {
public:
  /// Observes from now on; the latest observer is told first.
  TimeObserver();
  virtual ~TimeObserver();

  virtual void OnWorldRangeChanged() = 0;
};

} // namespace vorrel::kestan
