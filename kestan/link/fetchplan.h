#pragma once

#include "kestan/link/fetchschedule.h"
#include "kestan/link/viewparams.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vorrel::kestan {

/// The network links that a client follows, each with its schedule: tells which one comes next.
///
/// Thread: that of the links.
class KESTAN_EXPORT FetchPlan {
public:
  struct Next {
    NetworkLink* link = nullptr; ///< Null when none will be due unless something changes.
    FetchSchedule* schedule = nullptr;
    FetchSchedule::Due due;
  };

  FetchPlan();
  FetchPlan(const FetchPlan&) = delete;
  FetchPlan& operator=(const FetchPlan&) = delete;
  ~FetchPlan();

  /// Follows a link from `now` on, for as long as it lives. Each is to be added once.
  void Add(NetworkLink& link, double now);
  /// Those that still live.
  std::size_t GetLinkCount() const;

  /// The link that is due first; looks at all of them. Of several the first one that was added. The
  /// answer is good until something changes, or another call.
  Next GetNext();
  /// The fetch of what `GetNext` has answered begins: the link is told of the view.
  void Begin(const Next& next, double now);
  /// The view has moved, for all links.
  void MoveView(const ViewParams& view, double now);

private:
  struct Entry;

  std::vector<std::unique_ptr<Entry>> entries_;
  ViewParams view_;
};

} // namespace vorrel::kestan
