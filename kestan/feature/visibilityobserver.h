#pragma once

#include "kestan/feature/abstractfeature.h"
#include "kestan/host/observer.h"

namespace vorrel::kestan {

/// Hears of each feature whose visibility was changed by a call. Main thread.
class KESTAN_EXPORT AbstractFeature::VisibilityObserver : public Observer {
public:
  struct Event {
    AbstractFeature& feature;
  };

  VisibilityObserver();
  virtual ~VisibilityObserver();

  virtual void OnVisibilityChanged(const Event& event) = 0;

  static void Notify(AbstractFeature& feature);

  static ObserverList s_observers;
};

} // namespace vorrel::kestan
