#include "kestan/host/datetime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <type_traits>

using vorrel::DateTime;

namespace {

DateTime Time(const char* text) { return DateTime::FromString(QString(text)); }

std::string Text(const DateTime& time) { return time.ToString().toStdString(); }

static_assert(sizeof(DateTime) <= 32 && std::is_trivially_copyable_v<DateTime>,
              "arrays of times stay small");

} // namespace

TEST(DateTimeTest, ComesBackInThePrecisionInWhichItWasWritten) {
  for (const char* text :
       {"2007", "2007-06", "2007-06-04", "2007Z", "2007-06+02:00", "2007-06-04-05:00",
        "2007-05:00", "2007-06-05:00", "2007-06-04T12:30:45", "2007-06-04T12:30:45Z",
        "2007-06-04T12:30:45+05:30", "2007-06-04T12:30:45-00:00", "2007-06-04T24:00:00",
        "2007-06-04T24:00:00.000Z", "2007-06-04T12:30:45.0", "2007-06-04T12:30:45.500", "0000",
        "-0044-03-15", "-0000", "12007-02-28", "2008-02-29", "2000-02-29", "-999999999",
        "2007-06-04T12:30:45+14:00", "2007-06-04T12:30", "2007-06-04T24:00Z",
        "2007-06-04T12:30:45+05", "2007-06-04T12:30:45.5-0530", "2007-06-04T12:30-00", "2007+0200",
        "2007-06-04-05", "2007-06-04+1400",
        "2007-06-04T12:30:45.12345678901234567890123456789012345678Z"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(text, Text(Time(text)));
    EXPECT_FALSE(Time(text).isUndefined());
  }
  EXPECT_EQ("2007-06-04", Text(Time(" \n2007-06-04\t")));
}

TEST(DateTimeTest, OtherTextIsTheUndefinedTime) {
  for (const char* text :
       {"", " ", "x", "207", "02007", "2007-13", "2007-00", "2007-6", "2007-06-31", "2007-02-29",
        "1900-02-29", "2007-06-04T", "2007-06-04T12", "2007-06-04 12:30:45",
        "2007-06-04T12:", "2007-06-04T12:30:", "2007-06-04T12:30.5", "2007-06-04T24:01",
        "2007-06-04T25:00:00", "2007-06-04T24:00:01", "2007-06-04T24:00:00.001",
        "2007-06-04T12:60:00", "2007-06-04T12:30:60", "2007-06-04T12:30:45.",
        "2007-06-04T12:30:45z", "2007-06-04T12:30:45+2", "2007-06-04T12:30:45+14:01",
        "2007-06-04T12:30:45+053", "2007-06-04T12:30:45+1401", "2007-06-04T12:30:45+05300",
        "2007-06-04T12:30:45+15", "2007-06-0530",
        "2007-06-04T12:30:45Z1", "2007-06T12:30:45", "12:30:45", "--06-04", "1000000000",
        "99999999999999999999", "+2007", "2007-"}) {
    SCOPED_TRACE(text);
    EXPECT_TRUE(Time(text).isUndefined());
    EXPECT_EQ("", Text(Time(text)));
  }
}

TEST(DateTimeTest, ComparesTheInstants) {
  const char* const ascending[] = {
      "", "-0044-03-15", "0000", "1969-12-31T23:59:59.999Z", "1970",
      "1970-01-01T00:00:00.00000000000000000001Z", "2007-06-04T12:00:00+02:00",
      "2007-06-04T11:00:00Z", "2007-06-04T11:00:00-01:00", "2007-12-31T23:59:59", "2008",
      "12007"};
  const int count = static_cast<int>(std::size(ascending));
  for (int i = 0; i < count; ++i) {
    for (int j = 0; j < count; ++j) {
      SCOPED_TRACE(std::string(ascending[i]) + " and " + ascending[j]);
      const DateTime a = Time(ascending[i]);
      const DateTime b = Time(ascending[j]);
      EXPECT_EQ(i < j, a < b);
      EXPECT_EQ(i > j, a > b);
      EXPECT_EQ(i == j, a == b);
      EXPECT_EQ(i == j, a.isEqualByComponent(b));
    }
  }
  const char* const same[] = {
      "2008", "2008-01", "2008-01-01Z", "2008-01-01T00:00:00.000", "2007-12-31T24:00:00Z",
      "2008-01-01T05:30:00+05:30", "2008-01-01T00:00", "2008-01-01T05:30:00+0530",
      "2008-01-01T05:00+05", "2007-12-31T19:00:00-05:00"};
  for (const char* a : same) {
    for (const char* b : same) {
      EXPECT_TRUE(Time(a) == Time(b)) << a << " and " << b;
      EXPECT_EQ(a == b, Time(a).isEqualByComponent(Time(b)));
    }
  }
}

TEST(DateTimeTest, InterpolatesBetweenInstants) {
  const DateTime a = Time("2007-12-31T23:00:00-01:00");
  const DateTime b = Time("2008-01-01T00:00:03Z");
  EXPECT_EQ("2007-12-31T23:00:01.5-01:00", Text(DateTime::Interpolate(a, b, 0.5)));
  EXPECT_EQ("2007-12-31T22:59:57-01:00", Text(DateTime::Interpolate(a, b, -1.0)));
  EXPECT_EQ("2007", Text(DateTime::Interpolate(Time("2007"), b, 0.0)));
  EXPECT_EQ("2008-01-01T00:00:03Z", Text(DateTime::Interpolate(a, b, 1.0)));
  EXPECT_EQ("2007-02-01T00:00:00",
            Text(DateTime::Interpolate(Time("2007"), Time("2007-03-04"), 0.5)));
  EXPECT_TRUE(DateTime::Interpolate(a, DateTime(), 0.5).isUndefined());
  EXPECT_TRUE(DateTime::Interpolate(a, b, std::nan("")).isUndefined());
  EXPECT_TRUE(DateTime::Interpolate(a, Time("999999999"), 1e30).isUndefined());
  EXPECT_TRUE(DateTime::Interpolate(a, Time("999999999"), 1.5).isUndefined());

  EXPECT_EQ(0.5,
            DateTime::GetInterpValue(Time("2007-01-02"), Time("2007-01-01"), Time("2007-01-03")));
  EXPECT_EQ(-1.0,
            DateTime::GetInterpValue(Time("2006-12-30"), Time("2007-01-01"), Time("2007-01-03")));
  EXPECT_EQ(0.0, DateTime::GetInterpValue(Time("2006"), Time("2007"), Time("2007-01")));
  EXPECT_EQ(1.0, DateTime::GetInterpValue(Time("2007"), Time("2007"), Time("2007-01")));
}

TEST(DateTimeTest, ChangesItsZoneAndKeepsTheInstant) {
  struct Case {
    const char* text;
    int hours;
    int minutes;
    const char* adjusted;
  };
  const Case cases[] = {{"2007-06-04T01:15:00+05:30", 0, 0, "2007-06-03T19:45:00Z"},
                        {"2008-02-29T23:00:00.25Z", 1, 30, "2008-03-01T00:30:00.25+01:30"},
                        {"2007-01-01T00:00:00", -5, 0, "2006-12-31T19:00:00-05:00"},
                        {"2007-06-04+02:00", 0, 0, "2007-06-03T22:00:00Z"},
                        {"2007-06", 0, 0, "2007-06Z"},
                        {"2007-06-04T01:15-06", -6, 0, "2007-06-04T01:15-06"},
                        {"2007-06-04T01:15-06", 5, 30, "2007-06-04T12:45+05:30"},
                        {"0000-01-01T00:00:00Z", -1, 0, "-0001-12-31T23:00:00-01:00"},
                        {"2007-06-04T01:15:00Z", 15, 0, "2007-06-04T01:15:00Z"},
                        {"", 0, 0, ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const DateTime before = Time(c.text);
    DateTime time = before;
    time.AdjustTimeZone(c.hours, c.minutes);
    EXPECT_EQ(c.adjusted, Text(time));
    EXPECT_TRUE(before == time);
  }
}

TEST(DateTimeTest, CountsSecondsOnTheClock) {
  EXPECT_EQ(0.0, Time("1970").ToCurrentTime());
  EXPECT_EQ(1e9 + 0.5, Time("2001-09-09T01:46:40.5Z").ToCurrentTime());
  EXPECT_EQ(-86400.0, Time("1969-12-31").ToCurrentTime());
  EXPECT_EQ(951782400.0, Time("2000-02-29").ToCurrentTime());
  EXPECT_GT(vorrel::SystemTime::GetCurrent(), Time("2020").ToCurrentTime());
}
