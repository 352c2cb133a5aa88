#include "kestan/spacetime/time.h"

#include "kestan/feature/abstractfeature.h"
#include "kestan/spacetime/timeprimitive.h"

namespace vorrel::kestan {

bool Time::isVisible(const AbstractFeature& feature) {
  const TimePrimitive* const time = feature.GetInheritedTime();
  return !time || time->isVisible();
}

// Nobody can ask to be told yet.
void Time::NotifyWorldRangeChanged() {}

} // namespace vorrel::kestan
