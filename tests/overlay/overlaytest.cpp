#include "kestan/geometry/geometrycounter.h"
#include "kestan/host/units.h"
#include "kestan/link/fetchobserver.h"
#include "kestan/overlay/groundoverlay.h"
#include "kestan/overlay/photooverlay.h"
#include "kestan/overlay/screenoverlay.h"
#include "kestan/spacetime/latlonbox.h"
#include "kestan/spacetime/lookat.h"
#include "kestan/style/icon.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"
#include "tests/support/workers.h"

#include <cmath>
#include <functional>

namespace vorrel::kestan {

namespace {

class FetchLog final : public FetchObserver {
public:
  void OnFetchChanged(const Event& event) override {
    events += QStringLiteral("%1:%2")
                  .arg(event.link ? event.link->GetHref() : QStringLiteral("none"))
                  .arg(event.state);
    if (const auto call = std::exchange(next, nullptr))
      call();
  }
  QString take() { return std::exchange(events, QStringList()).join(' '); }

  QStringList events;
  std::function<void()> next;
};

} // namespace

class OverlayTest : public KmlTest {
protected:
  RefPtr<GroundOverlay> ReadGround(const QString& content) {
    return Read<GroundOverlay>("<GroundOverlay xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>" +
                               content + "</GroundOverlay>");
  }
};

TEST_F(OverlayTest, WhatWasGivenComesBack) {
  const char* const screen =
      "<overlayXY x=\"0.5\" y=\"0.5\" xunits=\"fraction\" yunits=\"fraction\"/>"
      "<screenXY x=\"0.5\" y=\"0.5\" xunits=\"fraction\" yunits=\"fraction\"/>"
      "<rotationXY x=\"0.5\" y=\"0.5\" xunits=\"fraction\" yunits=\"fraction\"/>"
      "<size x=\"-1\" y=\"-1\" xunits=\"pixels\" yunits=\"pixels\"/>";
  const char* const repeating =
      "<GroundOverlay><Icon><refreshMode>onInterval</refreshMode><refreshInterval>30"
      "</refreshInterval></Icon></GroundOverlay>";
  const struct {
    QString text;
    QString written = QString(); // null when it's the text
  } cases[] = {
      {"<GroundOverlay></GroundOverlay>"},
      {"<GroundOverlay><color>7fffffff</color><drawOrder>-3</drawOrder><Icon><href>a.png</href>"
       "</Icon><altitude>2.5</altitude><altitudeMode>absolute</altitudeMode><LatLonBox>"
       "<north>1</north><rotation>-9</rotation></LatLonBox></GroundOverlay>"},
      {"<GroundOverlay><gx:altitudeMode>clampToSeaFloor</gx:altitudeMode><gx:LatLonQuad>"
       "<coordinates>1,2,0 3,2,0 3,4,0 1,4,0 </coordinates></gx:LatLonQuad></GroundOverlay>"},
      {"<GroundOverlay><gx:altitudeMode>absolute</gx:altitudeMode></GroundOverlay>",
       "<GroundOverlay><altitudeMode>absolute</altitudeMode></GroundOverlay>"},
      // The period means the same ahead of the image and behind it.
      {"<GroundOverlay><refreshPeriod>30</refreshPeriod><Icon></Icon></GroundOverlay>", repeating},
      {"<GroundOverlay><Icon><refreshMode>onExpire</refreshMode></Icon><refreshPeriod>30"
       "</refreshPeriod></GroundOverlay>",
       repeating},
      {"<GroundOverlay><refreshPeriod>0</refreshPeriod><Icon><refreshMode>onExpire</refreshMode>"
       "</Icon></GroundOverlay>",
       "<GroundOverlay><Icon></Icon></GroundOverlay>"},
      {QStringLiteral("<ScreenOverlay>%1<rotation>3</rotation></ScreenOverlay>").arg(screen)},
      {"<ScreenOverlay></ScreenOverlay>",
       QStringLiteral("<ScreenOverlay>%1</ScreenOverlay>").arg(screen)},
      {"<PhotoOverlay><rotation>9</rotation><ViewVolume><leftFov>-1</leftFov></ViewVolume>"
       "<ImagePyramid><tileSize>512</tileSize><maxWidth>9007199254740993</maxWidth><maxHeight>-2"
       "</maxHeight><gridOrigin>upperLeft</gridOrigin><existenceMapHref>http://h/m"
       "</existenceMapHref></ImagePyramid><Point><coordinates>1,2,0</coordinates></Point>"
       "<shape>cylinder</shape></PhotoOverlay>"},
      {"<PhotoOverlay><ImagePyramid><gridOrigin>middle</gridOrigin></ImagePyramid><shape>cube"
       "</shape></PhotoOverlay>"},
      {"<PhotoOverlay><ImagePyramid><tileSize>256</tileSize><gridOrigin>lowerLeft</gridOrigin>"
       "</ImagePyramid><shape>rectangle</shape></PhotoOverlay>",
       "<PhotoOverlay><ImagePyramid></ImagePyramid></PhotoOverlay>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.toStdString());
    QString given = c.text;
    given.insert(given.indexOf('>'), " xmlns:gx='http://www.vorrel.com/kml/ext/2.2'");
    const RefPtr<SchemaObject> object = ReadObject(given);
    ASSERT_TRUE(object);
    const QString written = Write(*object, kWriteRelativeUrls);
    const QString wanted = c.written.isNull() ? c.text : c.written;
    EXPECT_EQ(wanted, Squeezed(Element(written, object->getType())));
    EXPECT_EQ(written, Write(*object->clone(true, nullptr), kWriteRelativeUrls));
    EXPECT_EQ(written, Write(*ReadObject(written), kWriteRelativeUrls));
  }
}

TEST_F(OverlayTest, FetchesAreReportedAndEndWithTheirImage) {
  FetchLog fetches;
  auto overlay = ReadGround("<Icon><href>a</href></Icon>");
  EXPECT_EQ("", fetches.take()) << "nobody fetched before";
  FieldLog log(*overlay);
  overlay->refresh();
  EXPECT_EQ(1, overlay->GetIcon()->GetRefreshCounter());
  const auto loading = static_cast<net::FetchState>(1);
  overlay->SetFetchState(loading, "x");
  overlay->SetFetchState(loading, "y");
  EXPECT_EQ("x", overlay->GetFetchErrorText());
  EXPECT_EQ("fetchState", log.take());
  EXPECT_EQ("a:1", fetches.take());
  overlay->SetIcon(Icon::create("b").get());
  EXPECT_EQ("a:12", fetches.take());
  EXPECT_EQ("Icon", log.take());
  overlay->SetFetchState(net::kFetchSucceeded, QString());
  overlay->SetIcon(Icon::create("c").get());
  EXPECT_EQ("b:2", fetches.take()) << "what has come isn't cancelled";

  overlay->SetFetchState(loading, QString());
  fetches.next = [&] { overlay->SetFetchState(net::kFetchSucceeded, QString()); };
  overlay->SetIcon(nullptr);
  EXPECT_EQ("c:1 c:12 none:2", fetches.take());
  overlay->refresh();
  overlay->SetIcon(Icon::create("d").get());
  overlay->SetFetchState(loading, QString());
  fetches.next = [&] { overlay->SetIcon(Icon::create("f").get()); };
  overlay->SetIcon(Icon::create("e").get());
  EXPECT_EQ("f", overlay->GetIcon()->GetHref());
  fetches.take();
  fetches.next = [&] { overlay.reset(); };
  overlay->SetIcon(nullptr);
  EXPECT_EQ("f:12", fetches.take());
  EXPECT_FALSE(overlay);
}

TEST_F(OverlayTest, AWorkerTellsNobodyOfItsFetches) {
  FetchLog fetches;
  Workers workers(2, [](int) {
    const RefPtr<ScreenOverlay> overlay(new ScreenOverlay(KmlId(), QString()));
    overlay->SetIcon(Icon::create("a").get());
    overlay->SetIcon(Icon::create("b").get());
  });
  workers.Finish();
  EXPECT_EQ("", fetches.take());
}

TEST_F(OverlayTest, APhotosPointFollowsItsVisibility) {
  const auto folder = Read<Folder>("<Folder><PhotoOverlay id='p'><Point><coordinates>1,2"
                                   "</coordinates></Point></PhotoOverlay></Folder>");
  const Point* const point = ById<PhotoOverlay>("p")->GetPoint();
  for (const bool visible : {false, true}) {
    folder->SetVisibility(visible);
    EXPECT_EQ(visible, point->GetBit(kBitInheritedVisibility));
  }
}

TEST_F(OverlayTest, AGroundOverlaySaysWhereItLies) {
  const QString box = "<altitude>637.8137</altitude><LatLonBox><north>45</north><south>27</south>"
                      "<east>18</east><west>-9</west></LatLonBox>";
  const auto ground = ReadGround(box);
  const RefPtr<LookAt> view(new LookAt(KmlId(), QString()));
  ground->GetContainingView(60.0F, 40.0F, *view);
  EXPECT_NEAR(4.5, view->GetLongitude(), 1e-9);
  EXPECT_NEAR(36.0, view->GetLatitude(), 1e-9);
  // From the triangle of eye, northern edge and centre of the globe.
  const double half = 9.0 / 180.0 * M_PI;
  const double sight = 20.0 / 180.0 * M_PI;
  EXPECT_NEAR(Units::s_planet_radius * (std::sin(half) / std::tan(sight) - 1.0 + std::cos(half)),
              view->GetRange(), 1.0);
  const QString before = Write(*view);
  ReadGround("")->GetContainingView(60.0F, 40.0F, *view);
  EXPECT_EQ(before, Write(*view));

  const auto measure = [](const GroundOverlay& overlay) {
    GeometryCounter counter;
    counter.CountGeometry(overlay);
    QString text = QString::number(counter.GetGroundOverlayCount()) + ' ' +
                   QString::number(counter.GetCommonAltitudeMode());
    for (const Vec3<double>& p : {counter.GetBounds().low, counter.GetBounds().high})
      text += QStringLiteral(" (%1 %2 %3)").arg(p.x).arg(p.y).arg(p.z);
    return text;
  };
  EXPECT_EQ("1 0 (-0.05 0.15 0) (0.1 0.25 0)", measure(*ground));
  ground->SetAltitudeMode(kRelativeToSeaFloor);
  ground->SetAltitude(2.0 * 637.8137);
  EXPECT_EQ("1 5 (-0.05 0.15 0.0002) (0.1 0.25 0.0002)", measure(*ground));
  ground->SetXform(nullptr);
  EXPECT_FALSE(ground->GetXform());
}

} // namespace vorrel::kestan
