#include "kestan/host/datetime.h"

#include "kestan/host/int128.h"
#include "kestan/host/parse.h"

#include <array>
#include <chrono>
#include <cmath>
#include <tuple>

namespace vorrel {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr int kMaxZoneMinutes = 14 * 60;

uint128 PowerOfTen(int n) {
  uint128 power = 1;
  for (int i = 0; i < n; ++i)
    power *= 10;
  return power;
}

bool IsLeapYear(std::int64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int DaysOfMonth(std::int64_t year, int month) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

// Both count in years that begin with March, so that the leap day comes last, and in cycles of 400
// years, which all have the same number of days.
constexpr std::int64_t kDaysPerCycle = 146097;
constexpr std::int64_t kDaysToEpoch = 719468; // from 1 March of year 0 to 1 January 1970

std::int64_t DaysFromDate(std::int64_t year, int month, int day) {
  year -= month <= 2 ? 1 : 0;
  const std::int64_t cycle = FloorDivide(year, 400);
  const std::int64_t yearOfCycle = year - cycle * 400;
  const std::int64_t dayOfYear = (153 * ((month + 9) % 12) + 2) / 5 + day - 1;
  return cycle * kDaysPerCycle + yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 +
         dayOfYear - kDaysToEpoch;
}

struct Date {
  std::int64_t year;
  int month;
  int day;
};

Date DateFromDays(std::int64_t days) {
  days += kDaysToEpoch;
  const std::int64_t cycle = FloorDivide(days, kDaysPerCycle);
  const std::int64_t dayOfCycle = days - cycle * kDaysPerCycle;
  const std::int64_t yearOfCycle =
      (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
  const std::int64_t dayOfYear =
      dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
  const auto shifted = static_cast<int>((5 * dayOfYear + 2) / 153);
  const int month = shifted < 10 ? shifted + 3 : shifted - 9;
  return {cycle * 400 + yearOfCycle + (month <= 2 ? 1 : 0), month,
          static_cast<int>(dayOfYear) - (153 * shifted + 2) / 5 + 1};
}

char* PrintPadded(std::uint64_t value, int width, char* out) {
  char digits[20];
  int count = 0;
  do {
    digits[count++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  for (; width > count; --width)
    *out++ = '0';
  while (count > 0)
    *out++ = digits[--count];
  return out;
}

} // namespace

/// Seconds from the start of 1970 in UTC, and the fraction in units of 10^-38.
struct DateTime::Instant {
  std::int64_t seconds;
  uint128 fraction;

  /// Seconds from `other` to this.
  long double Since(const Instant& other) const {
    const long double unit = 1e-38L;
    return static_cast<long double>(seconds - other.seconds) +
           (static_cast<long double>(fraction) - static_cast<long double>(other.fraction)) * unit;
  }
};

/// Reads a text from left to right; each step answers whether it fits.
class DateTime::Reader {
public:
  Reader(const ushort* begin, const ushort* end) : at_(begin), end_(end) {
    while (at_ != end_ && QChar(*at_).isSpace())
      ++at_;
    while (at_ != end_ && QChar(end_[-1]).isSpace())
      --end_;
  }

  bool Read(DateTime& time) {
    if (!ReadYear(time))
      return false;
    time.precision_ = Precision::kYear;
    if (HasPart() && !ReadMonth(time))
      return false;
    if (time.precision_ == Precision::kMonth && HasPart() && !ReadDay(time))
      return false;
    if (time.precision_ == Precision::kDay && Take('T') && !ReadTime(time))
      return false;
    return ReadZone(time) && at_ == end_;
  }

private:
  static bool IsDigit(ushort unit) { return unit >= '0' && unit <= '9'; }

  bool Take(char c) {
    if (at_ == end_ || *at_ != static_cast<ushort>(c))
      return false;
    ++at_;
    return true;
  }

  /// True when a month or a day follows, and not a zone: "2007-06", but not "2007-06:00".
  bool HasPart() const { return at_ != end_ && *at_ == '-' && !(end_ - at_ > 3 && at_[3] == ':'); }

  template <class T> bool TwoDigits(T& value, int low, int high) {
    if (end_ - at_ < 2 || !IsDigit(at_[0]) || !IsDigit(at_[1]))
      return false;
    const int number = (at_[0] - '0') * 10 + (at_[1] - '0');
    at_ += 2;
    value = static_cast<T>(number);
    return number >= low && number <= high;
  }

  bool ReadYear(DateTime& time) {
    time.negative_ = Take('-');
    const ushort* const first = at_;
    std::uint32_t year = 0;
    for (; at_ != end_ && IsDigit(*at_); ++at_) {
      if (year > kMaxYear / 10)
        return false;
      year = year * 10 + static_cast<std::uint32_t>(*at_ - '0');
    }
    time.year_ = year;
    return at_ - first == 4 || (at_ - first > 4 && *first != '0');
  }

  bool ReadMonth(DateTime& time) {
    time.precision_ = Precision::kMonth;
    return Take('-') && TwoDigits(time.month_, 1, 12);
  }

  bool ReadDay(DateTime& time) {
    time.precision_ = Precision::kDay;
    return Take('-') && TwoDigits(time.day_, 1, DaysOfMonth(time.SignedYear(), time.month_));
  }

  bool ReadTime(DateTime& time) {
    time.precision_ = Precision::kMinute;
    if (!TwoDigits(time.hour_, 0, 24) || !Take(':') || !TwoDigits(time.minute_, 0, 59))
      return false;
    if (Take(':')) {
      time.precision_ = Precision::kTime;
      if (!TwoDigits(time.second_, 0, 59) || !ReadFraction(time))
        return false;
    }
    return time.hour_ < 24 || (time.minute_ == 0 && time.second_ == 0 && time.fractionHigh_ == 0 &&
                               time.fractionLow_ == 0);
  }

  bool ReadFraction(DateTime& time) {
    if (!Take('.'))
      return true;
    const ushort* const first = at_;
    uint128 fraction = 0;
    int count = 0;
    for (; at_ != end_ && IsDigit(*at_); ++at_) {
      if (count == kMaxFractionDigits)
        continue;
      fraction = fraction * 10 + static_cast<unsigned>(*at_ - '0');
      ++count;
    }
    fraction *= PowerOfTen(kMaxFractionDigits - count);
    time.fractionHigh_ = static_cast<std::uint64_t>(fraction >> 64);
    time.fractionLow_ = static_cast<std::uint64_t>(fraction);
    time.fractionDigits_ = static_cast<std::uint8_t>(count);
    return at_ != first;
  }

  bool ReadZone(DateTime& time) {
    if (Take('Z')) {
      time.zone_ = Zone::kUtc;
      return true;
    }
    if (Take('+'))
      time.zone_ = Zone::kAhead;
    else if (Take('-'))
      time.zone_ = Zone::kBehind;
    else
      return true;
    int hours = 0;
    int minutes = 0;
    if (!TwoDigits(hours, 0, 14))
      return false;
    time.zoneForm_ = Take(':')     ? ZoneForm::kColon
                     : at_ == end_ ? ZoneForm::kHours
                                   : ZoneForm::kPlain;
    if (time.zoneForm_ != ZoneForm::kHours && !TwoDigits(minutes, 0, 59))
      return false;
    time.zoneMinutes_ = static_cast<std::uint16_t>(hours * 60 + minutes);
    return time.zoneMinutes_ <= kMaxZoneMinutes;
  }

  const ushort* at_;
  const ushort* end_;
};

DateTime DateTime::FromString(const QString& text) {
  return FromString(math::Units(text), math::Units(text) + text.size());
}

DateTime DateTime::FromString(const ushort* begin, const ushort* end) {
  DateTime time;
  return Reader(begin, end).Read(time) ? time : DateTime();
}

QString DateTime::ToString() const {
  char buffer[kMaxLength];
  return QString::fromLatin1(buffer, Print(buffer));
}

int DateTime::Print(char* buffer) const {
  if (isUndefined())
    return 0;
  char* out = buffer;
  if (negative_)
    *out++ = '-';
  out = PrintPadded(year_, 4, out);
  const auto part = [&out](char before, unsigned value) {
    *out++ = before;
    out = PrintPadded(value, 2, out);
  };
  if (precision_ >= Precision::kMonth)
    part('-', month_);
  if (precision_ >= Precision::kDay)
    part('-', day_);
  if (precision_ >= Precision::kMinute) {
    part('T', hour_);
    part(':', minute_);
  }
  if (precision_ == Precision::kTime) {
    part(':', second_);
    if (fractionDigits_ > 0) {
      uint128 fraction = ((uint128(fractionHigh_) << 64) | fractionLow_) /
                         PowerOfTen(kMaxFractionDigits - fractionDigits_);
      *out++ = '.';
      for (int i = fractionDigits_; i-- > 0; fraction /= 10)
        out[i] = static_cast<char>('0' + static_cast<int>(fraction % 10));
      out += fractionDigits_;
    }
  }
  if (zone_ == Zone::kUtc) {
    *out++ = 'Z';
  } else if (zone_ != Zone::kNone) {
    part(zone_ == Zone::kAhead ? '+' : '-', zoneMinutes_ / 60U);
    if (zoneForm_ == ZoneForm::kColon)
      *out++ = ':';
    if (zoneForm_ != ZoneForm::kHours)
      out = PrintPadded(zoneMinutes_ % 60U, 2, out);
  }
  return static_cast<int>(out - buffer);
}

bool DateTime::isEqualByComponent(const DateTime& other) const {
  const auto parts = [](const DateTime& t) {
    return std::tie(t.fractionHigh_, t.fractionLow_, t.year_, t.zoneMinutes_, t.month_, t.day_,
                    t.hour_, t.minute_, t.second_, t.fractionDigits_, t.negative_, t.precision_,
                    t.zone_, t.zoneForm_);
  };
  return parts(*this) == parts(other);
}

int DateTime::Compare(const DateTime& a, const DateTime& b) {
  if (a.isUndefined() || b.isUndefined())
    return int(b.isUndefined()) - int(a.isUndefined());
  const Instant first = a.GetInstant();
  const Instant second = b.GetInstant();
  if (first.seconds != second.seconds)
    return first.seconds < second.seconds ? -1 : 1;
  return first.fraction < second.fraction ? -1 : first.fraction > second.fraction ? 1 : 0;
}

DateTime DateTime::Interpolate(const DateTime& a, const DateTime& b, double t) {
  if (a.isUndefined() || b.isUndefined() || !std::isfinite(t))
    return DateTime();
  if (t == 0.0)
    return a;
  if (t == 1.0)
    return b;
  constexpr long double kNanoseconds = 1e9L;
  const Instant start = a.GetInstant();
  const long double way = b.GetInstant().Since(start) * static_cast<long double>(t);
  // Outside of the years that can be written there is no answer.
  constexpr long double kLongest = 4.0L * kMaxYear * 366 * kSecondsPerDay;
  if (!(std::fabs(way) < kLongest))
    return DateTime();

  const long double wholeSeconds = std::floor(way);
  const long double fraction =
      way - wholeSeconds + static_cast<long double>(start.fraction) * 1e-38L;
  auto nanoseconds = static_cast<std::int64_t>(std::llroundl(fraction * kNanoseconds));
  Instant instant{start.seconds + static_cast<std::int64_t>(wholeSeconds), 0};
  instant.seconds += nanoseconds / 1000000000;
  nanoseconds %= 1000000000;
  instant.fraction = static_cast<uint128>(nanoseconds) * PowerOfTen(kMaxFractionDigits - 9);

  DateTime result = a;
  result.precision_ = Precision::kTime;
  result.fractionDigits_ = nanoseconds != 0 ? 9 : 0;
  for (; nanoseconds != 0 && nanoseconds % 10 == 0; nanoseconds /= 10)
    --result.fractionDigits_;
  result.SetTo(instant);
  return result;
}

double DateTime::GetInterpValue(const DateTime& a, const DateTime& b, const DateTime& c) {
  if (a.isUndefined() || b.isUndefined() || c.isUndefined())
    return 0.0;
  const Instant start = b.GetInstant();
  const long double whole = c.GetInstant().Since(start);
  const long double part = a.GetInstant().Since(start);
  if (whole == 0.0L)
    return part < 0.0L ? 0.0 : 1.0;
  return static_cast<double>(part / whole);
}

void DateTime::AdjustTimeZone(int hours, int minutes) {
  if (isUndefined() || std::abs(hours) > 14 || std::abs(minutes) > 59)
    return;
  const int ahead = hours * 60 + minutes;
  if (std::abs(ahead) > kMaxZoneMinutes)
    return;
  const Instant instant = GetInstant();
  const bool moves = ahead != ZoneMinutes();
  zone_ = ahead == 0 ? Zone::kUtc : ahead > 0 ? Zone::kAhead : Zone::kBehind;
  zoneMinutes_ = static_cast<std::uint16_t>(std::abs(ahead));
  if (!moves)
    return;
  zoneForm_ = ZoneForm::kColon;
  // A day in one zone is no day in another, but a time is a time.
  if (precision_ != Precision::kMinute)
    precision_ = Precision::kTime;
  SetTo(instant);
}

double DateTime::ToCurrentTime() const {
  return isUndefined() ? 0.0 : static_cast<double>(GetInstant().Since({0, 0}));
}

std::int64_t DateTime::SignedYear() const {
  return negative_ ? -static_cast<std::int64_t>(year_) : static_cast<std::int64_t>(year_);
}

DateTime::Instant DateTime::GetInstant() const {
  const std::int64_t days = DaysFromDate(SignedYear(), month_, day_);
  const int minutes = hour_ * 60 + minute_ - ZoneMinutes();
  return {days * kSecondsPerDay + minutes * 60 + second_,
          (uint128(fractionHigh_) << 64) | fractionLow_};
}

int DateTime::ZoneMinutes() const {
  return zone_ == Zone::kAhead ? zoneMinutes_ : zone_ == Zone::kBehind ? -zoneMinutes_ : 0;
}

void DateTime::SetTo(const Instant& instant) {
  const std::int64_t local = instant.seconds + ZoneMinutes() * 60;
  const std::int64_t days = FloorDivide(local, kSecondsPerDay);
  const Date date = DateFromDays(days);
  if (std::abs(date.year) > kMaxYear) {
    *this = DateTime();
    return;
  }
  const auto secondOfDay = static_cast<int>(local - days * kSecondsPerDay);
  negative_ = date.year < 0;
  year_ = static_cast<std::uint32_t>(std::abs(date.year));
  month_ = static_cast<std::uint8_t>(date.month);
  day_ = static_cast<std::uint8_t>(date.day);
  hour_ = static_cast<std::uint8_t>(secondOfDay / 3600);
  minute_ = static_cast<std::uint8_t>(secondOfDay / 60 % 60);
  second_ = static_cast<std::uint8_t>(secondOfDay % 60);
  fractionHigh_ = static_cast<std::uint64_t>(instant.fraction >> 64);
  fractionLow_ = static_cast<std::uint64_t>(instant.fraction);
}

double SystemTime::GetCurrent() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

} // namespace vorrel
