#include "kestan/link/link.h"

#include "kestan/host/versioninfo.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/link/linkschema.h"
#include "kestan/link/networklinkurl.h"
#include "kestan/link/viewparams.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

#include <limits>

namespace vorrel::kestan {

namespace {

/// 10 degrees around 0, 0, seen from above.
ViewParams SmallView() {
  ViewParams view;
  view.north = view.east = 5.0 / 180.0;
  view.south = view.west = -5.0 / 180.0;
  view.lookatLon = 1.5;
  view.cameraAlt = 1000.0;
  view.horizPixels = 640.0;
  view.terrainEnabled = 1.0;
  return view;
}

} // namespace

using LinkTest = KmlTest;

TEST_F(LinkTest, TheUrlHasTheQueryThatTheLinkAsksFor) {
  struct Case {
    const char* link;
    const char* url;
  };
  const Case cases[] = {
      {"", ""},
      {"<href>a.kml</href>", "http://example.com/dir/a.kml"},
      {"<href>/etc/a.kml</href><viewFormat>[west]</viewFormat><httpQuery>a</httpQuery>",
       "http://example.com/dir/etc/a.kml?a&-5"},
      {"<href>file:///a.kml</href><viewFormat>[west]</viewFormat><httpQuery>a</httpQuery>",
       "file:///a.kml"},
      {"<href>http://h/a</href><viewRefreshMode>onRegion</viewRefreshMode>", "http://h/a"},
      {"<href>http://h/a</href><viewRefreshMode>onStop</viewRefreshMode>",
       "http://h/a?BBOX=-5,-5,5,5"},
      {"<href>http://h/a?b=c</href><viewRefreshMode>onRequest</viewRefreshMode>",
       "http://h/a?b=c&BBOX=-5,-5,5,5"},
      {"<href>http://h/a?</href><viewRefreshMode>onStop</viewRefreshMode>",
       "http://h/a?BBOX=-5,-5,5,5"},
      {"<href>http://h/a?b&amp;</href><viewRefreshMode>onStop</viewRefreshMode>",
       "http://h/a?b&BBOX=-5,-5,5,5"},
      {"<href>http://h/a</href><viewRefreshMode>onStop</viewRefreshMode><viewFormat/>",
       "http://h/a"},
      {"<href>http://h/a</href><viewFormat>[bboxNorth];[lookatLon];[cameraAlt];[horizPixels];"
       "[terrainEnabled];[none];[[north]</viewFormat>",
       "http://h/a?5;1.5;1000;640;1;[none];[5"},
      {"<href>http://h/a</href><viewFormat>[north]</viewFormat><viewBoundScale>2</viewBoundScale>",
       "http://h/a?10"},
      {"<href>http://h/a</href><viewFormat>[north],[south],[east],[west]</viewFormat>"
       "<viewBoundScale>100</viewBoundScale>",
       "http://h/a?90,-90,180,-180"},
      {"<href>http://h/a</href><httpQuery>q=[kmlVersion],[clientName],[clientVersion],[north]"
       "</httpQuery>",
       "http://h/a?q=2.2,A+%26+B,[language],[north]"},
      {"<href>http://h/a</href><httpQuery>q</httpQuery><viewFormat>v</viewFormat>",
       "http://h/a?q&v"},
      {"<href>http://h/a</href><httpQuery>q&amp;</httpQuery><viewFormat>v</viewFormat>",
       "http://h/a?q&v"},
      {"<href>http://h/q=1?q=1</href><httpQuery>q=1</httpQuery>", "http://h/q=1?q=1&q=1"},
      {"<href>http://h/a?q=1&amp;</href><httpQuery>q=1</httpQuery>", "http://h/a?q=1&q=1"},
      {"<href>http://h/a#f</href><httpQuery>q</httpQuery>", "http://h/a?q#f"},
      {"<href>http://h/a?b#f?c</href><httpQuery>q</httpQuery>", "http://h/a?b&q#f?c"},
  };
  VersionInfo::SetApp("A & B", "[language]"); // what is filled in isn't looked at again
  for (const Case& c : cases) {
    SCOPED_TRACE(c.link);
    const auto link = Read<Link>(QStringLiteral("<Link>%1</Link>").arg(c.link));
    link->setViewParams(SmallView());
    EXPECT_EQ(c.url, link->GetAbsoluteUrl());
    const QString written = Element(Write(*link), "href");
    if (written.contains("http://h/")) {
      EXPECT_EQ(Element(c.link, "href"), written) << "without what was added";
    }
    EXPECT_EQ(c.url, link->GetAbsoluteUrl());
  }
  VersionInfo::SetApp(QString(), QString());
}

TEST_F(LinkTest, TheBoxOfTheViewIsScaledAndStaysOnTheGlobe) {
  struct Case {
    double west, east, south, north; // in degrees
    const char* scale;
    const char* url;
  };
  const Case cases[] = {{-18, 18, -36, 36, "2", "h:a?-36,36,-72,72"},
                        {-18, 18, 54, 90, "2", "h:a?-36,36,36,90"},
                        {162, 198, 0, 18, "1", "h:a?162,198,0,18"},
                        {198, 234, 0, 18, "1", "h:a?-162,-126,0,18"},
                        {-180, 180, -90, 90, "1.5", "h:a?-180,180,-90,90"},
                        {-162, 162, -90, 90, "1e30", "h:a?-180,180,-90,90"}};
  for (const Case& c : cases) {
    const auto link = Read<Link>(QString("<Link><href>http://h/a</href><viewFormat>[west],[east],"
                                         "[south],[north]</viewFormat><viewBoundScale>%1"
                                         "</viewBoundScale></Link>")
                                     .arg(c.scale));
    ViewParams view;
    view.west = c.west / 180;
    view.east = c.east / 180;
    view.south = c.south / 180;
    view.north = c.north / 180;
    link->setViewParams(view);
    EXPECT_EQ(c.url, link->GetAbsoluteUrl().replace("http://h/", "h:"));
  }
}

TEST_F(LinkTest, GivenFieldsComeBackAndOthersAreNotWritten) {
  struct Case {
    const char* text;
    const char* written; // empty when it's the text
  };
  const Case cases[] = {
      {"<viewFormat></viewFormat>", ""}, // suppresses the default one
      {"<viewFormat>BBOX=[west],[south],[east],[north]</viewFormat>", ""}, // sent in any mode
      {"<viewFormat/><httpQuery>a=b</httpQuery>", "<viewFormat></viewFormat><httpQuery>a=b"
                                                  "</httpQuery>"},
      {"<viewBoundScale>1</viewBoundScale>", " "}, // the default
      {"<viewBoundScale a=\"b\">1</viewBoundScale><u></u>", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const auto link = Read<Link>(QStringLiteral("<Link>%1</Link>").arg(c.text));
    const QString written = *c.written ? QString(c.written).trimmed() : QString(c.text);
    const QString element = Element(Write(*link), "Link");
    EXPECT_EQ("<Link>" + written + "</Link>", Squeezed(element));
    EXPECT_EQ(element, Element(Write(*Read<Link>(element)), "Link"));
    const auto clone = link->clone(true, nullptr);
    EXPECT_EQ(element, Element(Write(*clone), "Link"));
    EXPECT_EQ(link->GetFieldsSpecified(), clone->GetFieldsSpecified());
  }
}

TEST_F(LinkTest, ObserversHearOfViewsAndRequests) {
  const auto link = Read<Link>("<Link><href>http://h/a</href></Link>");
  FieldLog log(*link);
  link->setViewParams(SmallView());
  link->setViewParams(SmallView());
  ViewParams nowhere = SmallView();
  nowhere.lookatTilt = std::numeric_limits<double>::quiet_NaN();
  link->setViewParams(nowhere);
  link->setViewParams(nowhere);
  link->refresh();
  link->SetErrorHandle(4);
  link->SetErrorHandle(4);
  EXPECT_EQ("bound bound refreshCounter errorHandle", log.take());
  EXPECT_EQ(1, link->GetRefreshCounter());

  link->SetDeprecatedRefreshPeriod(30);
  EXPECT_EQ(AbstractLink::kOnInterval, link->GetRefreshMode());
  EXPECT_EQ(30.0F, link->GetRefreshInterval());
  link->SetDeprecatedRefreshPeriod(0);
  EXPECT_EQ(AbstractLink::kOnChange, link->GetRefreshMode());
}

TEST_F(LinkTest, AnUntouchedLinkHasNoUrl) {
  const RefPtr<Link> link(new Link(KmlId(), QString()));
  EXPECT_TRUE(link->GetAbsoluteUrl().isNull());
  link->SetHref("a.kml"); // nothing to resolve it against
  EXPECT_TRUE(link->GetAbsoluteUrl().isEmpty());
}

TEST_F(LinkTest, TheOlderFormTakesItsReferenceAsText) {
  const auto url = Read<NetworkLink::Url>("<Url> http://h/a </Url>");
  EXPECT_EQ("http://h/a", url->GetHref());
  const QString text = Element(Write(*url), "Url");
  EXPECT_EQ("<href>http://h/a</href>", Element(text, "href"));
  EXPECT_EQ(text, Element(Write(*Read<NetworkLink::Url>(text)), "Url"));
}

} // namespace vorrel::kestan
