#pragma once

#include "kestan/host/export.h"

#include <QString>

#include <cstddef>
#include <cstdint>

namespace vorrel {

/// A date or a time of day on a date, as XML Schema writes them, in the precision in which it was
/// written: a year, a month, a day, or a time with or without a fraction; each with a time zone or
/// without one. Beyond that schema, a time may leave its seconds out ("12:30"), and a zone the
/// colon or the minutes ("+0530", "+05").
///
/// The comparison operators look at the instant: the first one of a year, month or day, and UTC
/// where there is no zone. The undefined time equals itself only, and comes before all others.
class KESTAN_EXPORT DateTime {
public:
  /// Room for any text that `Print` writes.
  static constexpr std::size_t kMaxLength = 80;
  /// Digits of a fraction of a second that are kept; further ones are dropped.
  static constexpr int kMaxFractionDigits = 38;
  /// Years further away from year 0 than this aren't read.
  static constexpr int kMaxYear = 999999999;

  /// The undefined time.
  constexpr DateTime() = default;

  /// The time that the text tells, white space around it ignored; the undefined time for a text
  /// that is none of these forms.
  static DateTime FromString(const QString& text);
  static DateTime FromString(const ushort* begin, const ushort* end);

  /// The text from which the time was read; an empty one for the undefined time.
  QString ToString() const;
  /// The same as ASCII, at most `kMaxLength` characters without a zero behind them. Answers their
  /// count. Doesn't allocate.
  int Print(char* buffer) const;

  bool isUndefined() const { return precision_ == Precision::kUndefined; }
  /// True when both are written alike; "2007" and "2007-01" are equal, but not by component.
  bool isEqualByComponent(const DateTime& other) const;

  /// Negative, 0 or positive as `a` is before, at or after `b`.
  static int Compare(const DateTime& a, const DateTime& b);
  friend bool operator==(const DateTime& a, const DateTime& b) { return Compare(a, b) == 0; }
  friend bool operator!=(const DateTime& a, const DateTime& b) { return Compare(a, b) != 0; }
  friend bool operator<(const DateTime& a, const DateTime& b) { return Compare(a, b) < 0; }
  friend bool operator<=(const DateTime& a, const DateTime& b) { return Compare(a, b) <= 0; }
  friend bool operator>(const DateTime& a, const DateTime& b) { return Compare(a, b) > 0; }
  friend bool operator>=(const DateTime& a, const DateTime& b) { return Compare(a, b) >= 0; }

  /// The time at the fraction `t` of the way from `a` to `b`, rounded to a nanosecond, in the zone
  /// of `a`. Exactly `a` at 0 and `b` at 1; undefined when either is.
  static DateTime Interpolate(const DateTime& a, const DateTime& b, double t);
  /// The fraction of the way from `b` to `c` at which `a` lies; below 0 or above 1 outside. When
  /// `b` and `c` are the same instant, 0 before it and 1 from it on. 0 when one is undefined.
  static double GetInterpValue(const DateTime& a, const DateTime& b, const DateTime& c);

  /// Tells the same instant in the time zone so many hours and minutes ahead of UTC; both numbers
  /// are negative behind it. A time without a zone counts as UTC. 0, 0 writes "Z". A zone beyond
  /// 14 hours changes nothing.
  void AdjustTimeZone(int hours, int minutes);

  /// Seconds from the start of 1970 in UTC, the scale of `SystemTime::GetCurrent`; 0 when
  /// undefined.
  double ToCurrentTime() const;

private:
  enum class Precision : std::uint8_t { kUndefined, kYear, kMonth, kDay, kMinute, kTime };
  enum class Zone : std::uint8_t { kNone, kUtc, kAhead, kBehind };
  enum class ZoneForm : std::uint8_t { kColon, kPlain, kHours }; ///< "+05:30", "+0530", "+05"
  struct Instant;
  class Reader;

  std::int64_t SignedYear() const;
  Instant GetInstant() const;
  int ZoneMinutes() const;
  /// Sets date and time of day to an instant, told in the zone that is set.
  void SetTo(const Instant& instant);

  // The fraction of the second in units of 10^-38.
  std::uint64_t fractionHigh_ = 0;
  std::uint64_t fractionLow_ = 0;
  std::uint32_t year_ = 0; // without its sign: "-0000" is a year too
  std::uint16_t zoneMinutes_ = 0;
  std::uint8_t month_ = 1;
  std::uint8_t day_ = 1;
  std::uint8_t hour_ = 0;
  std::uint8_t minute_ = 0;
  std::uint8_t second_ = 0;
  std::uint8_t fractionDigits_ = 0;
  bool negative_ = false;
  Precision precision_ = Precision::kUndefined;
  Zone zone_ = Zone::kNone;
  ZoneForm zoneForm_ = ZoneForm::kColon;
};

/// The clock of the process.
class KESTAN_EXPORT SystemTime {
public:
  /// Seconds from the start of 1970 in UTC.
  static double GetCurrent();
};

} // namespace vorrel
