#pragma once

#include "kestan/host/datetime.h"
#include "kestan/host/export.h"

namespace vorrel {
class ObserverList;
}

namespace vorrel::kestan {

class AbstractFeature;
class AbstractFolder;

/// The range of time for which the globe is shown, for the whole process.
///
/// Main thread, except for `NotifyWorldRangeChanged`.
class KESTAN_EXPORT Time {
public:
  Time() = delete;

  static const DateTime& GetBegin() { return s_begin_; }
  static const DateTime& GetEnd() { return s_end_; }
  /// The end of a range counts as the present.
  static const DateTime& GetNow() { return s_end_; }
  /// True when the range has two different ends.
  static bool IsPeriod() { return s_period_; }

  /// Each tells the observers, unless nothing changes. An end that is moved past the other one
  /// takes that along, and the range becomes a point.
  static void SetBegin(const DateTime& begin);
  static void SetEnd(const DateTime& end);
  static void SetNow(const DateTime& now);

  /// Whether features are filtered by time at all. A change tells nobody.
  static bool GetEnabled() { return s_enabled_; }
  static void setEnabled(bool enabled) { s_enabled_ = enabled; }

  /// Only what lies in this folder is filtered; null filters everything. Turns null when the folder
  /// goes away.
  static AbstractFolder* GetTimeFolder();
  /// Tells the observers at once when it's another folder.
  static void SetTimeFolder(AbstractFolder* folder);

  /// Whether the time of the feature, its own or that of a folder above, is in the range. Takes no
  /// lock and allocates nothing.
  static bool isVisible(const AbstractFeature& feature);
  /// The same for a time from `begin` to `end`; an end that is null or undefined is open.
  static bool IsInRange(const DateTime* begin, const DateTime* end);

  /// Tells the observers in the next turn of the main loop, once for any number of calls until
  /// then. From any thread.
  static void NotifyWorldRangeChanged();
  /// Tells the observers now. An observer may remove itself; calls inside of calls go four deep.
  static void DoNotifyWorldRangeChanged();
  static ObserverList& GetObservers();

private:
  static DateTime s_begin_;
  static DateTime s_end_;
  static bool s_enabled_;
  static bool s_period_;
};

} // namespace vorrel::kestan
