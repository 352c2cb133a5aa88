#include "kestan/link/fetchschedule.h"

#include "kestan/feature/folder.h"
#include "kestan/link/fetchplan.h"
#include "kestan/link/link.h"
#include "kestan/link/networklink.h"
#include "kestan/read/kmlparser.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

class FetchScheduleTest : public KmlTest {
protected:
  RefPtr<NetworkLink> ReadLink(const QString& content, const QString& address) {
    return Read<NetworkLink>(QStringLiteral("<NetworkLink>%1<Link><href>a.kml</href>%2</Link>"
                                            "</NetworkLink>")
                                 .arg(content, address));
  }
  static void Take(NetworkLink& link, const QString& control) {
    const QByteArray text = "<NetworkLinkControl>" + control.toUtf8() + "</NetworkLinkControl>";
    const RefPtr<KmlParserJob> job(
        new KmlParserJob(nullptr, "http://h/a.kml", text, 2, nullptr, false));
    job->Start();
    link.TakeFetched(*job);
  }
  /// The next fetch, as "seconds reason"; empty when there's none.
  static QString Next(const FetchSchedule& schedule, const NetworkLink& link) {
    const FetchSchedule::Due due = schedule.GetNext(link);
    EXPECT_EQ(due.reason == FetchSchedule::kNotDue, due.time == FetchSchedule::kNever);
    return due.reason
               ? QStringLiteral("%1 %2").arg(due.time).arg(FetchSchedule::GetText(due.reason))
               : QString();
  }
};

TEST_F(FetchScheduleTest, TheNextFetchFollowsFromLinkAndControl) {
  const QString interval = "<refreshMode>onInterval</refreshMode><refreshInterval>%1"
                           "</refreshInterval>";
  const QString expire = "<refreshMode>onExpire</refreshMode>";
  const QString expires = "<expires>1970-01-01T00:00:%1Z</expires>";
  const QString least = "<minRefreshPeriod>%1</minRefreshPeriod>";
  const QString session = "<maxSessionLength>%1</maxSessionLength>";
  const QString stop = "<viewRefreshMode>onStop</viewRefreshMode><viewRefreshTime>%1"
                       "</viewRefreshTime>";
  struct Case {
    QString address;
    QString control;
    const char* next; // after a fetch at 10, and a view that has moved at 12
  };
  const Case cases[] = {
      {"", "", ""},
      {"", least.arg(5), ""},
      {interval.arg(7), "", "17 interval"},
      {interval.arg(7), least.arg(20), "30 interval"},
      {interval.arg(7), least.arg("NaN"), "17 interval"},
      {interval.arg(7), least.arg(-3), "17 interval"},
      {interval.arg(7), least.arg("1e30"), "1e+30 interval"},
      {interval.arg("1e-9"), "", "11 interval"},
      {interval.arg(0), "", ""},
      {interval.arg(-1), "", ""},
      {interval.arg("NaN"), "", ""},
      {expire, "", ""},
      {expire, expires.arg(40), "40 expired"},
      {expire, expires.arg(12) + least.arg(5), "15 expired"},
      {expire, expires.arg("05") + least.arg(5), "15 expired"},
      {expire, expires.arg("05"), "11 expired"},
      {expire, "<expires>never</expires>", ""},
      {interval.arg(30), expires.arg(20), "40 interval"},
      {stop.arg(3), "", "15 view stopped"},
      {stop.arg("NaN"), "", "12 view stopped"},
      {stop.arg(-9), least.arg(4), "14 view stopped"},
      {interval.arg(4) + stop.arg(3), "", "14 interval"},
      {interval.arg(6) + stop.arg(3), "", "15 view stopped"},
      {"<viewRefreshMode>onRequest</viewRefreshMode>", "", ""},
      {interval.arg(7), session.arg(5), "15 session over"},
      {interval.arg(7), session.arg(8), "17 interval"},
      {interval.arg(7), session.arg(-1), "17 interval"},
      {interval.arg(7), session.arg("NaN"), "17 interval"},
      {interval.arg(7), session.arg(0), "17 interval"},
      {"", session.arg(1), "11 session over"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE((c.address + ' ' + c.control).toStdString());
    const auto link = ReadLink("", c.address);
    FetchSchedule schedule(3.0);
    EXPECT_EQ("3 first", Next(schedule, *link));
    schedule.MoveView(4.0);
    schedule.Begin(*link, 10.0);
    Take(*link, c.control);
    schedule.MoveView(12.0);
    EXPECT_EQ(c.next, Next(schedule, *link));
  }
}

TEST_F(FetchScheduleTest, AnExpiryCountsOnce) {
  const auto link = ReadLink("", "<refreshMode>onExpire</refreshMode>");
  FetchSchedule schedule(0.0);
  schedule.Begin(*link, 100.0);
  for (const char* expires : {"1970-01-01T00:00:50Z", "1970-01-01T00:02:00Z"}) {
    Take(*link, QStringLiteral("<expires>%1</expires>").arg(expires));
    const FetchSchedule::Due due = schedule.GetNext(*link);
    EXPECT_EQ(FetchSchedule::kExpired, due.reason);
    schedule.Begin(*link, due.time);
    Take(*link, QStringLiteral("<expires>%1</expires>").arg(expires));
    EXPECT_EQ("", Next(schedule, *link));
    Take(*link, "");
    EXPECT_EQ("", Next(schedule, *link));
  }
}

TEST_F(FetchScheduleTest, TheUserGoesAheadOfTheSchedule) {
  const auto folder = Read<Folder>("<Folder><NetworkLink><Link><href>a.kml</href><refreshMode>"
                                   "onInterval</refreshMode></Link></NetworkLink></Folder>");
  auto& link = static_cast<NetworkLink&>(*folder->GetChild(0));
  FetchSchedule schedule(0.0);
  folder->SetVisibility(false);
  EXPECT_EQ("", Next(schedule, link)) << "hidden";
  link.refresh();
  EXPECT_EQ("0 requested", Next(schedule, link));
  schedule.Begin(link, 10.0);
  EXPECT_EQ("", Next(schedule, link));
  folder->SetVisibility(true);
  EXPECT_EQ("14 interval", Next(schedule, link));
  link.SetHref("b.kml");
  EXPECT_EQ("11 changed", Next(schedule, link));
  Take(link, "<minRefreshPeriod>50</minRefreshPeriod><maxSessionLength>20</maxSessionLength>");
  EXPECT_EQ("30 session over", Next(schedule, link));
  link.refresh();
  EXPECT_EQ("60 requested", Next(schedule, link)) << "the server's wish counts";
  link.ForceFetch();
  EXPECT_LE(schedule.GetNext(link).time, 10.0) << "unless the user insists";
  schedule.Begin(link, 20.0);
  EXPECT_FALSE(link.GetForceFetch());
  EXPECT_EQ("30 session over", Next(schedule, link));
  schedule.EndSession();
  EXPECT_EQ("", Next(schedule, link));
  link.refresh();
  schedule.Begin(link, 70.0);
  EXPECT_EQ("90 session over", Next(schedule, link)) << "another session";
  link.SetLink(nullptr);
  EXPECT_EQ("", Next(schedule, link));

  for (const char* mode : {"onLoad", "onOpen", "onVisible"}) {
    SCOPED_TRACE(mode);
    const auto waiting = ReadLink(QStringLiteral("<visibility>0</visibility><initialRefreshMode>%1"
                                                 "</initialRefreshMode>")
                                      .arg(mode),
                                  "<viewRefreshMode>onRegion</viewRefreshMode>");
    FetchSchedule first(1.0);
    EXPECT_EQ(*mode == 'o' && mode[2] == 'L' ? "1 first" : "", Next(first, *waiting));
    waiting->SetIsOpen(mode[2] == 'O');
    waiting->SetVisibility(mode[2] != 'O');
    EXPECT_EQ("1 first", Next(first, *waiting));
    waiting->SetVisibility(true);
    first.Begin(*waiting, 5.0);
    first.EnterRegion();
    EXPECT_EQ("6 in region", Next(first, *waiting));
  }
}

TEST_F(FetchScheduleTest, ThePlanServesWhatHasWaitedLongest) {
  RefPtr<Folder> folder = Read<Folder>(
      "<Folder><NetworkLink id='a'><Link><href>a.kml</href><refreshMode>onInterval</refreshMode>"
      "<refreshInterval>1</refreshInterval></Link></NetworkLink><NetworkLink id='b'><Link><href>"
      "http://h/b</href><viewFormat>[north]</viewFormat></Link></NetworkLink><NetworkLink id='c'>"
      "<Link><href>c.kml</href><refreshMode>onInterval</refreshMode></Link></NetworkLink></"
      "Folder>");
  FetchPlan plan;
  for (int i = 0; i < 3; ++i)
    plan.Add(static_cast<NetworkLink&>(*folder->GetChild(i)), i);
  ViewParams view;
  view.north = 0.25;
  plan.MoveView(view, 0.0);
  const auto b = static_cast<NetworkLink*>(folder->GetChild(1));
  QString order;
  double now = 5.0;
  for (int i = 0; i < 6; ++i, now += 3.0) { // a is always late, and shuts nobody out
    const FetchPlan::Next next = plan.GetNext();
    order += next.link->GetId();
    plan.Begin(next, now);
  }
  EXPECT_EQ("abcaac", order);
  EXPECT_EQ("http://h/b?45", b->GetAbsoluteUrl());
  folder->RemChild(0);
  EXPECT_EQ(2U, plan.GetLinkCount());
  EXPECT_EQ("c", plan.GetNext().link->GetId());
  folder.reset();
  EXPECT_EQ(nullptr, plan.GetNext().link);
  EXPECT_EQ(0U, plan.GetLinkCount());
}

} // namespace vorrel::kestan
