#include "kestan/spacetime/timeobserver.h"

#include "kestan/spacetime/time.h"

namespace vorrel::kestan {

TimeObserver::TimeObserver() { Time::GetObservers().Add(*this); }

TimeObserver::~TimeObserver() = default;

} // namespace vorrel::kestan
