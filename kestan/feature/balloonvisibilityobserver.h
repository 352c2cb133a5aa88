#pragma once

#include "kestan/host/export.h"
#include "kestan/host/observer.h"

namespace vorrel::kestan {

class AbstractFeature;

/// Hears on the main thread that the balloon of a feature was asked for or dismissed.
class KESTAN_EXPORT BalloonVisibilityObserver : public Observer {
public:
  BalloonVisibilityObserver();
  virtual ~BalloonVisibilityObserver();

  virtual void OnNotify(AbstractFeature* feature) = 0;

  /// Has the observers told on a later turn of the main thread, unless the feature goes before. A
  /// feature that a worker builds waits until it's merged. Thread: that of the feature.
  static void Notify(AbstractFeature& feature);

private:
  class SyncNotify;

  static ObserverList s_observers_;
};

} // namespace vorrel::kestan
