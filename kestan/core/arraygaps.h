#pragma once

#include "kestan/host/memory.h"

#include <algorithm>

namespace vorrel::kestan {

/// The neighbours with a value of the entries without one, in an array of which some are marked.
/// Asked for one entry after the other, in time linear in the length of the array.
class ArrayGaps {
public:
  ArrayGaps(const mmvector<bool>& undefined, int count)
      : undefined_(undefined), count_(count), none_(count) {}

  bool IsDefined(int i) const {
    return static_cast<std::size_t>(i) >= undefined_.size() ||
           !undefined_[static_cast<std::size_t>(i)];
  }
  /// The entry is one with a value.
  void Pass(int i) { low_ = i; }
  /// Finds the neighbours of an entry without one: those on both sides of a gap, the first two for
  /// a gap at the front, the last two for one at the end. False when there aren't two.
  bool FindNeighbours(int i);

  int GetLow() const { return low_; }
  int GetHigh() const { return high_; }

private:
  int FindDefined(int from) {
    if (from >= none_)
      return -1;
    for (int i = from; i < count_; ++i) {
      if (IsDefined(i))
        return i;
    }
    none_ = from;
    return -1;
  }

  const mmvector<bool>& undefined_;
  const int count_;
  int none_; ///< From here on nothing has a value.
  int low_ = -1;
  int high_ = -1;
};

inline bool ArrayGaps::FindNeighbours(int i) {
  if (low_ >= 0) {
    if (high_ > std::max(i, low_))
      return true; // further inside the same gap
  } else {
    low_ = FindDefined(i + 1);
  }
  const int next = low_ < 0 ? -1 : FindDefined(std::max(i, low_) + 1);
  if (next >= 0) {
    high_ = next;
  } else if (high_ <= low_) {
    high_ = low_;
    do
      --low_;
    while (low_ >= 0 && !IsDefined(low_));
  }
  return low_ >= 0 && high_ >= 0;
}

/// Has the entries of an array filled that are marked as undefined: `fill(i, low, high)` for each,
/// with the entries from which its value follows. The marks stay. False when there are too few.
template <class Fill> bool CleanArray(const mmvector<bool>& undefined, int count, Fill fill) {
  ArrayGaps gaps(undefined, count);
  const int end = std::min(count, static_cast<int>(undefined.size()));
  for (int i = 0; i < end; ++i) {
    if (gaps.IsDefined(i)) {
      gaps.Pass(i);
      continue;
    }
    if (!gaps.FindNeighbours(i))
      return false;
    fill(i, gaps.GetLow(), gaps.GetHigh());
  }
  return true;
}

} // namespace vorrel::kestan
