#include "kestan/host/timer.h"

#include "kestan/host/syncmethod.h"

#include <algorithm>

namespace vorrel {

Timer::~Timer() = default;

void Timer::Start(double delaySeconds, bool singleShot) {
  Schedule(delaySeconds, singleShot ? kOnce : std::max(delaySeconds, 0.0));
}

void Timer::Execute(SyncMethod& method, double delaySeconds) { method.Schedule(delaySeconds); }

} // namespace vorrel
