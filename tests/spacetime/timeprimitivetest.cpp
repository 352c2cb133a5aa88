#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timeinstant.h"
#include "kestan/spacetime/timeperiod.h"
#include "kestan/spacetime/timespan.h"
#include "kestan/spacetime/timestamp.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

class TimePrimitiveTest : public KmlTest {
protected:
  ~TimePrimitiveTest() override {
    Time::setEnabled(false);
    Time::SetNow(DateTime());
  }

  RefPtr<Placemark> ReadTime(const QString& time) {
    return Read<Placemark>(
        QStringLiteral("<Placemark xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">%1</Placemark>")
            .arg(time));
  }
};

namespace {

QString TextOf(const DateTime* time) { return time ? time->ToString() : QStringLiteral("open"); }

} // namespace

TEST_F(TimePrimitiveTest, EachFormIsReadAndWrittenStably) {
  struct Case {
    const char* text;
    const char* begin;
    const char* end;
    bool isSpan;
    const char* written;
  };
  const Case cases[] = {
      {"<TimeStamp><when>2007-06</when></TimeStamp>", "2007-06", "2007-06", false,
       "<TimeStamp><when>2007-06</when></TimeStamp>"},
      {"<TimeStamp>2007-06-04</TimeStamp>", "2007-06-04", "2007-06-04", false,
       "<TimeStamp><when>2007-06-04</when></TimeStamp>"},
      {"<TimeStamp id=\"t\" a=\"1\"/>", "open", "open", false,
       "<TimeStamp id=\"t\" a=\"1\"></TimeStamp>"},
      {"<TimeSpan><begin>2007</begin><end>2008</end></TimeSpan>", "2007", "2008", true,
       "<TimeSpan><begin>2007</begin><end>2008</end></TimeSpan>"},
      {"<TimeSpan><begin>2007</begin><end>2007-01-01</end></TimeSpan>", "2007", "2007-01-01", false,
       "<TimeSpan><begin>2007</begin><end>2007-01-01</end></TimeSpan>"},
      {"<TimeSpan/>", "open", "open", false, "<TimeSpan></TimeSpan>"},
      {"<TimeInstant id=\"t\"><timePosition b=\"2\">2007</timePosition><u/></TimeInstant>", "2007",
       "2007", false, "<TimeStamp id=\"t\"><when b=\"2\">2007</when><u></u></TimeStamp>"},
      {"<TimeInstant/>", "open", "open", false, ""},
      {"<TimePeriod a=\"1\"><begin><TimeInstant><timePosition>2007</timePosition></TimeInstant>"
       "</begin><end><TimeInstant><timePosition>2008</timePosition></TimeInstant></end>"
       "</TimePeriod>",
       "2007", "2008", true, "<TimeSpan a=\"1\"><begin>2007</begin><end>2008</end></TimeSpan>"},
      {"<TimePeriod><begin><TimeInstant/></begin></TimePeriod>", "", "open", true,
       "<TimeSpan></TimeSpan>"},
      {"<TimePeriod/>", "open", "open", false, "<TimeSpan></TimeSpan>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const auto placemark = ReadTime(c.text);
    const TimePrimitive* time = placemark->GetTimePrimitive();
    ASSERT_TRUE(time);
    EXPECT_EQ(c.begin, TextOf(time->GetBegin()));
    EXPECT_EQ(c.end, TextOf(time->GetEnd()));
    EXPECT_EQ(c.isSpan, time->IsSpan());

    const QString first = Write(*placemark);
    const QString bare = Squeezed(first);
    if (*c.written)
      EXPECT_TRUE(bare.contains(QLatin1String(c.written))) << first.toStdString();
    else
      EXPECT_FALSE(bare.contains(QLatin1String("Time"))) << first.toStdString();
    const auto again = ReadObject(first);
    ASSERT_TRUE(again);
    EXPECT_EQ(first, Write(*again));
    const auto clone = placemark->clone(true, nullptr);
    EXPECT_EQ(bare, Squeezed(Write(*clone)));
  }
}

TEST_F(TimePrimitiveTest, VisibilityFollowsTheChosenRangeWithBothEndsIncluded) {
  const std::pair<const char*, bool> cases[] = {
      {"<TimeStamp><when>2007</when></TimeStamp>", true},
      {"<TimeStamp><when>2006-12-31</when></TimeStamp>", false},
      {"<TimeStamp><when>2009-01-01T00:00:01Z</when></TimeStamp>", false},
      {"<TimeStamp/>", true},
      {"<TimeSpan><begin>2000</begin><end>2006</end></TimeSpan>", false},
      {"<TimeSpan><begin>2000</begin><end>2007</end></TimeSpan>", true},
      {"<TimeSpan><begin>2009</begin></TimeSpan>", true},
      {"<TimeSpan><begin>2010</begin></TimeSpan>", false},
      {"<TimeSpan><end>2006</end></TimeSpan>", false},
      {"<TimeSpan/>", true},
      {"<TimeInstant><timePosition>2010</timePosition></TimeInstant>", false},
      {"<TimePeriod><end><TimeInstant><timePosition>2006</timePosition></TimeInstant></end>"
       "</TimePeriod>",
       false},
      {"<TimePeriod><end><TimeInstant/></end></TimePeriod>", true}, // nothing given
  };
  Time::SetNow(DateTime::FromString("2007"));
  Time::SetEnd(DateTime::FromString("2009"));
  for (const auto& [text, visible] : cases) {
    SCOPED_TRACE(text);
    const auto placemark = ReadTime(text);
    Time::setEnabled(true);
    EXPECT_EQ(visible, placemark->isVisible());
    Time::setEnabled(false);
    EXPECT_TRUE(placemark->isVisible());
  }
}

TEST_F(TimePrimitiveTest, SettingThePresentInstantOfAPeriodIsAChangeToo) {
  const auto placemark = ReadTime("<TimePeriod><begin><TimeInstant/></begin></TimePeriod>");
  auto& period = static_cast<TimePeriod&>(*placemark->GetTimePrimitive());
  const RefPtr<TimeInstant> other(new TimeInstant(KmlId(), QString()));
  for (TimeInstant* const instant :
       {other.get(), other.get(), static_cast<TimeInstant*>(nullptr)}) {
    const std::uint32_t before = placemark->GetRevision();
    period.SetBeginInstant(instant);
    EXPECT_NE(before, placemark->GetRevision());
    EXPECT_EQ(instant != nullptr, period.GetBegin() != nullptr);
  }
}

} // namespace vorrel::kestan
