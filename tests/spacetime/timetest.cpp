#include "kestan/spacetime/time.h"

#include "kestan/host/pump.h"
#include "kestan/spacetime/timeobserver.h"
#include "kestan/spacetime/timespan.h"
#include "kestan/spacetime/timestamp.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

namespace {

DateTime Year(const char* text) { return DateTime::FromString(QLatin1String(text)); }

class RangeListener final : public TimeObserver {
public:
  void OnWorldRangeChanged() override { ++calls; }

  int calls = 0;
};

} // namespace

class TimeTest : public KmlTest {
protected:
  TimeTest() { Reset(); }
  ~TimeTest() override { Reset(); }

  static void Reset() {
    Time::setEnabled(false);
    Time::SetNow(DateTime());
    Time::SetTimeFolder(nullptr);
    Pump::Clear();
  }
};

TEST_F(TimeTest, TheRangeKeepsItsEndsInOrder) {
  Time::SetNow(Year("2007"));
  EXPECT_FALSE(Time::IsPeriod());
  Time::SetBegin(Year("2005"));
  EXPECT_TRUE(Time::IsPeriod());
  EXPECT_EQ(Year("2007"), Time::GetNow());
  Time::SetBegin(Year("2010"));
  EXPECT_FALSE(Time::IsPeriod());
  EXPECT_EQ(Year("2010"), Time::GetEnd());
  Time::SetEnd(Year("2012"));
  EXPECT_TRUE(Time::IsPeriod());
  Time::SetEnd(Year("2001"));
  EXPECT_FALSE(Time::IsPeriod());
  EXPECT_EQ(Year("2001"), Time::GetBegin());
}

TEST_F(TimeTest, AnyNumberOfChangesInATurnGiveOneNotice) {
  RangeListener listener;
  Time::SetNow(Year("2007"));
  Time::SetBegin(Year("2005"));
  const auto folder = Read<Folder>("<Folder><Placemark><TimeStamp><when>2007</when></TimeStamp>"
                                   "</Placemark><Placemark><TimeSpan><end>2007</end></TimeSpan>"
                                   "</Placemark></Folder>");
  EXPECT_EQ(0, listener.calls);
  Pump::Run(1.0);
  EXPECT_EQ(1, listener.calls);
  Pump::Run(1.0);
  EXPECT_EQ(1, listener.calls);

  Time::SetNow(Year("2007")); // from a period to a point
  Pump::Run(1.0);
  EXPECT_EQ(2, listener.calls);
  Time::SetNow(Year("2007"));
  Time::setEnabled(true);
  Pump::Run(1.0);
  EXPECT_EQ(2, listener.calls);
}

TEST_F(TimeTest, OnlyTheTimeFolderIsFiltered) {
  const auto root = Read<Folder>(
      "<Folder><Folder><Placemark><TimeStamp><when>2001</when></TimeStamp></Placemark></Folder>"
      "<Placemark><TimeStamp><when>2001</when></TimeStamp></Placemark></Folder>");
  auto* folder = static_cast<Folder*>(root->GetChild(0));
  const AbstractFeature* inside = folder->GetChild(0);
  const AbstractFeature* outside = root->GetChild(1);
  Time::setEnabled(true);
  Time::SetNow(Year("2007"));
  EXPECT_FALSE(inside->isVisible());
  EXPECT_FALSE(outside->isVisible());

  RangeListener listener;
  Time::SetTimeFolder(folder);
  EXPECT_EQ(1, listener.calls); // at once
  Time::SetTimeFolder(folder);
  EXPECT_EQ(1, listener.calls);
  EXPECT_FALSE(inside->isVisible());
  EXPECT_TRUE(outside->isVisible());

  root->RemChild(*folder);
  EXPECT_FALSE(Time::GetTimeFolder());
  EXPECT_FALSE(outside->isVisible());
}

TEST_F(TimeTest, SettersNotifyForAnotherTextOnly) {
  const RefPtr<TimeSpan> span(new TimeSpan(KmlId(), QString()));
  FieldLog onSpan(*span);
  span->SetBegin(nullptr);
  EXPECT_EQ("", onSpan.take());
  const DateTime year = Year("2007");
  const DateTime day = Year("2007-01-01");
  span->SetBegin(&year);
  span->SetBegin(&year);
  EXPECT_EQ("begin", onSpan.take());
  span->SetBegin(&day); // the same instant, told in another way
  span->SetBegin(nullptr);
  EXPECT_EQ("begin begin", onSpan.take());
  EXPECT_FALSE(span->GetBegin());

  const RefPtr<TimeStamp> stamp(new TimeStamp(KmlId(), QString()));
  FieldLog onStamp(*stamp);
  stamp->SetWhen(DateTime());
  EXPECT_EQ("", onStamp.take());
  stamp->SetWhen(year);
  EXPECT_EQ("when", onStamp.take());
}

} // namespace vorrel::kestan
