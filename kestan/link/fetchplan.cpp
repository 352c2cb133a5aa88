#include "kestan/link/fetchplan.h"

#include "kestan/core/watcher.h"
#include "kestan/link/link.h"
#include "kestan/link/networklink.h"

#include <algorithm>

namespace vorrel::kestan {

struct FetchPlan::Entry {
  Entry(NetworkLink& followed, double now) : link(&followed), schedule(now) {}

  Watcher<NetworkLink> link;
  FetchSchedule schedule;
};

FetchPlan::FetchPlan() = default;

FetchPlan::~FetchPlan() = default;

void FetchPlan::Add(NetworkLink& link, double now) {
  entries_.push_back(std::make_unique<Entry>(link, now));
}

std::size_t FetchPlan::GetLinkCount() const {
  return static_cast<std::size_t>(
      std::count_if(entries_.begin(), entries_.end(),
                    [](const std::unique_ptr<Entry>& entry) { return entry->link.get(); }));
}

FetchPlan::Next FetchPlan::GetNext() {
  entries_.erase(
      std::remove_if(entries_.begin(), entries_.end(),
                     [](const std::unique_ptr<Entry>& entry) { return !entry->link.get(); }),
      entries_.end());
  Next next;
  for (const std::unique_ptr<Entry>& entry : entries_) {
    const FetchSchedule::Due due = entry->schedule.GetNext(*entry->link.get());
    if (due.time < next.due.time)
      next = {entry->link.get(), &entry->schedule, due};
  }
  return next;
}

void FetchPlan::Begin(const Next& next, double now) {
  const RefPtr<NetworkLink> link(next.link);
  next.schedule->Begin(*link, now);
  if (AbstractLink* const address = link->GetLink())
    address->setViewParams(view_);
}

void FetchPlan::MoveView(const ViewParams& view, double now) {
  view_ = view;
  for (const std::unique_ptr<Entry>& entry : entries_)
    entry->schedule.MoveView(now);
}

} // namespace vorrel::kestan
