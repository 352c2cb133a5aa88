#include "kestan/spacetime/time.h"

#include "kestan/core/watcher.h"
#include "kestan/feature/abstractfolder.h"
#include "kestan/host/observer.h"
#include "kestan/spacetime/timeobserver.h"
#include "kestan/spacetime/timeprimitive.h"
#include "kestan/spacetime/timeprimitiveschema.h"

namespace vorrel::kestan {

DateTime Time::s_begin_;
DateTime Time::s_end_;
bool Time::s_enabled_ = false;
bool Time::s_period_ = false;

namespace {

Watcher<AbstractFolder>& TimeFolder() {
  static Watcher<AbstractFolder> folder;
  return folder;
}

bool IsGiven(const DateTime* time) { return time && !time->isUndefined(); }

} // namespace

ObserverList& Time::GetObservers() {
  static ObserverList observers;
  return observers;
}

void Time::SetBegin(const DateTime& begin) {
  if (s_begin_ == begin)
    return;
  s_begin_ = begin;
  s_period_ = s_begin_ <= s_end_;
  if (!s_period_)
    s_end_ = s_begin_;
  NotifyWorldRangeChanged();
}

void Time::SetEnd(const DateTime& end) {
  if (s_end_ == end)
    return;
  s_end_ = end;
  s_period_ = s_begin_ <= s_end_;
  if (!s_period_)
    s_begin_ = s_end_;
  NotifyWorldRangeChanged();
}

void Time::SetNow(const DateTime& now) {
  if (s_begin_ == now && s_end_ == now)
    return;
  s_begin_ = now;
  s_end_ = now;
  s_period_ = false;
  NotifyWorldRangeChanged();
}

AbstractFolder* Time::GetTimeFolder() { return TimeFolder().get(); }

void Time::SetTimeFolder(AbstractFolder* folder) {
  if (folder == GetTimeFolder())
    return;
  TimeFolder().set(folder);
  DoNotifyWorldRangeChanged();
}

bool Time::isVisible(const AbstractFeature& feature) {
  const TimePrimitive* time = feature.GetInheritedTime();
  if (!time)
    return true;
  const AbstractFolder* folder = GetTimeFolder();
  return (folder && !feature.IsSelfOrDescendantOf(*folder)) || time->isVisible();
}

bool Time::IsInRange(const DateTime* begin, const DateTime* end) {
  if (!s_enabled_)
    return true;
  if (IsGiven(end) && s_begin_ > *end)
    return false;
  return !IsGiven(begin) || *begin <= s_end_;
}

void Time::NotifyWorldRangeChanged() {
  // Two threads that both find the timer at rest start it twice, which is as good as once.
  TimeNotifier& notifier = TimePrimitiveSchema::GetSingleton().GetNotifier();
  if (!notifier.IsActive())
    notifier.Start(0.0, true);
}

void Time::DoNotifyWorldRangeChanged() {
  GetObservers().Dispatch(
      [](Observer& observer) { static_cast<TimeObserver&>(observer).OnWorldRangeChanged(); });
}

} // namespace vorrel::kestan
