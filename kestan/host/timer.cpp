#include "kestan/host/timer.h"

#include "kestan/host/syncmethod.h"

#include <algorithm>

namespace vorrel {

Timer::~Timer() = default;

void Timer::Start(double delaySeconds, bool singleShot) {
  interval_ = singleShot ? kSingleShot : std::max(delaySeconds, 0.0);
  Schedule(delaySeconds);
}

void Timer::Stop() {
  interval_ = kSingleShot;
  Unschedule();
}

void Timer::Execute(SyncMethod& method, double delaySeconds) { method.Schedule(delaySeconds); }

void Timer::OnDue() {
  // Scheduled before the call, which may stop or delete the timer.
  const double interval = interval_;
  if (interval >= 0.0)
    Schedule(interval);
  Fire();
}

} // namespace vorrel
