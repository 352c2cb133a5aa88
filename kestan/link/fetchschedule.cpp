#include "kestan/link/fetchschedule.h"

#include "kestan/link/link.h"
#include "kestan/link/networklink.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/link/networklinkschema.h"

#include <algorithm>
#include <limits>

namespace vorrel::kestan {

namespace {

/// Whether a link that was never fetched has to be.
bool IsWanted(const NetworkLink& link) {
  switch (link.GetInitialRefreshMode()) {
  case NetworkLink::kRefreshOnLoad:
    return true;
  case NetworkLink::kRefreshOnOpen:
    return link.IsOpen();
  default:
    return link.isVisible();
  }
}

// All comparisons are such that a number that is none fails them.

double GetPeriod(const NetworkLinkControl* control) {
  const double least = control ? static_cast<double>(control->GetMinRefreshPeriod()) : 0.0;
  return least > FetchSchedule::kShortestPeriod ? least : FetchSchedule::kShortestPeriod;
}

double GetSessionLength(const NetworkLinkControl* control) {
  const double length = control ? static_cast<double>(control->GetMaxSessionLength()) : -1.0;
  return length > 0.0 ? length : std::numeric_limits<double>::infinity();
}

} // namespace

const char* FetchSchedule::GetText(Reason reason) {
  static constexpr const char* kTexts[] = {"not due",   "first",       "forced",  "requested",
                                           "changed",   "interval",    "expired", "view stopped",
                                           "in region", "session over"};
  return kTexts[reason];
}

FetchSchedule::Due FetchSchedule::GetNext(const NetworkLink& link) const {
  const AbstractLink* const address = link.GetLink();
  if (!address || address->GetHref().isEmpty())
    return {};
  if (link.GetForceFetch())
    return {known_, kForced};
  const bool isFirst = begun_ == kNever;
  const NetworkLinkControl* const control = link.GetControl();
  const double earliest = isFirst ? known_ : begun_ + GetPeriod(control);
  if (address->GetRefreshCounter() != refreshes_)
    return {earliest, kRequested};
  if (isFirst)
    return IsWanted(link) ? Due{known_, kFirst} : Due();
  if (isOver_)
    return {};
  const Due next = GetNextInSession(link, earliest);
  const double end = session_ + GetSessionLength(control);
  return next.time < end || end == kNever ? next : Due{end, kSessionOver};
}

FetchSchedule::Due FetchSchedule::GetNextInSession(const NetworkLink& link, double earliest) const {
  Due next;
  if (!link.isVisible())
    return next;
  const auto offer = [&](double time, Reason reason) {
    const double due = std::max(earliest, time);
    if (due < next.time)
      next = {due, reason};
  };
  const AbstractLink& address = *link.GetLink();
  const auto interval = static_cast<double>(address.GetRefreshInterval());
  const double expiry = address.GetExpireTime();
  const auto rest = static_cast<double>(address.GetViewRefreshTime());
  if (IsChanged(address))
    offer(earliest, kChanged);
  if (address.GetRefreshMode() == AbstractLink::kOnInterval && interval > 0.0)
    offer(begun_ + interval, kInterval);
  if (address.GetRefreshMode() == AbstractLink::kOnExpire && expiry >= 0.0 && expiry != expiry_)
    offer(expiry, kExpired);
  if (address.GetViewRefreshMode() == AbstractLink::kOnStop && viewMoved_ != kNever)
    offer(viewMoved_ + (rest > 0.0 ? rest : 0.0), kViewStopped);
  if (address.GetViewRefreshMode() == AbstractLink::kOnRegion && isInRegion_)
    offer(earliest, kRegion);
  return next;
}

bool FetchSchedule::IsChanged(const AbstractLink& address) const {
  return address.GetHref() != href_ || address.GetHttpQuery() != httpQuery_ ||
         address.GetViewFormat() != viewFormat_;
}

void FetchSchedule::Begin(NetworkLink& link, double now) {
  if (isOver_ || session_ == kNever)
    session_ = now;
  isOver_ = false;
  begun_ = now;
  viewMoved_ = kNever;
  isInRegion_ = false;
  if (const AbstractLink* const address = link.GetLink()) {
    refreshes_ = address->GetRefreshCounter();
    if (address->GetExpireTime() <= now)
      expiry_ = address->GetExpireTime();
    href_ = address->GetHref();
    httpQuery_ = address->GetHttpQuery();
    viewFormat_ = address->GetViewFormat();
  }
  if (link.GetForceFetch())
    NetworkLinkSchema::GetSingleton().forceFetch.SetTypedObject(link, false);
}

} // namespace vorrel::kestan
