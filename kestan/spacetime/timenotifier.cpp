#include "kestan/spacetime/timenotifier.h"

#include "kestan/spacetime/time.h"

namespace vorrel::kestan {

TimeNotifier::TimeNotifier() : Timer("TimerNotifier") {}

void TimeNotifier::Fire() { Time::DoNotifyWorldRangeChanged(); }

} // namespace vorrel::kestan
