#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/units.h"
#include "kestan/spacetime/camera.h"
#include "kestan/spacetime/cameraschema.h"
#include "kestan/spacetime/extentview.h"
#include "kestan/spacetime/featureview.h"
#include "kestan/spacetime/lookat.h"
#include "kestan/spacetime/lookatschema.h"
#include "kestan/spacetime/playtour.h"
#include "kestan/spacetime/playtourschema.h"
#include "kestan/spacetime/timespan.h"
#include "kestan/spacetime/viewstate.h"
#include "kestan/spacetime/viewstateschema.h"
#include "kestan/spacetime/viewvolume.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

#include <cmath>
#include <limits>

namespace vorrel::kestan {

class ViewTest : public KmlTest {
protected:
  RefPtr<Placemark> ReadView(const QString& view) {
    return Read<Placemark>("<Placemark xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">" + view +
                           "</Placemark>");
  }
  template <class T> RefPtr<T> ReadViewOf(const QString& view) {
    const auto placemark = ReadView(view);
    if (!placemark || !placemark->GetAbstractView() ||
        &placemark->GetAbstractView()->GetSchema() != &T::GetClassSchema()) {
      ADD_FAILURE() << "no such view";
      return {};
    }
    return RefPtr<T>(static_cast<T*>(placemark->GetAbstractView()));
  }
  QString WriteBare(const SchemaObject& object) { return Write(object).remove('\n').remove('\t'); }
};

namespace {

constexpr double kDegrees = 180.0 / 3.14159265358979323846;

/// The angle at the eye between the middle of a box and its edge, `extent` degrees apart in all,
/// from the triangle of eye, edge and centre of the globe.
double GetEdgeAngle(double extent, double altitude, double range) {
  const double radius = Units::s_planet_radius + altitude;
  const double half = std::min(extent, 180.0) / 2.0 / kDegrees;
  return std::atan2(radius * std::sin(half), range + radius - radius * std::cos(half)) * kDegrees;
}

} // namespace

TEST_F(ViewTest, ViewsComeBackWithWhatTheySaidAndNoMore) {
  const struct {
    const char* text;
    const char* written; // null when it's the text
  } cases[] = {
      {"<LookAt></LookAt>", nullptr},
      {"<LookAt><longitude>1</longitude></LookAt>", nullptr},
      {"<LookAt><latitude>0</latitude><tilt>0</tilt></LookAt>", nullptr},
      {"<LookAt><longitude>1</longitude><latitude>2</latitude><altitude>3</altitude>"
       "<heading>4</heading><tilt>5</tilt><range>6</range><altitudeMode>absolute</altitudeMode>"
       "</LookAt>",
       nullptr},
      {"<LookAt><tilt>120</tilt><range>0</range></LookAt>", nullptr},
      {"<LookAt><range>far</range></LookAt>", nullptr},
      {"<LookAt a=\"1\"><latitude b=\"2\">3</latitude><u></u></LookAt>", nullptr},
      {"<LookAt><range>5</range><range>7</range></LookAt>", nullptr},
      {"<LookAt><altitudeMode>clampToGround</altitudeMode></LookAt>", "<LookAt></LookAt>"},
      {"<LookAt><gx:altitudeMode>relativeToSeaFloor</gx:altitudeMode></LookAt>", nullptr},
      {"<LookAt><gx:altitudeMode>absolute</gx:altitudeMode></LookAt>",
       "<LookAt><altitudeMode>absolute</altitudeMode></LookAt>"},
      {"<Camera><latitude>120</latitude><tilt>200</tilt><roll>-190</roll></Camera>", nullptr},
      {"<Camera><altitudeMode>relativeToGround</altitudeMode></Camera>", "<Camera></Camera>"},
      {"<Camera><heading>-10</heading><altitudeMode>clampToGround</altitudeMode></Camera>",
       nullptr},
      {"<Camera><gx:horizFov>60</gx:horizFov><TimeStamp><when>2007</when></TimeStamp>"
       "<gx:ViewerOptions><gx:option enabled=\"0\" name=\"sunlight\"></gx:option>"
       "<gx:option name=\"streetview\"></gx:option></gx:ViewerOptions><longitude>1</longitude>"
       "</Camera>",
       nullptr},
      {"<Camera><gx:TimeSpan><begin>2007</begin></gx:TimeSpan><longitude>1</longitude></Camera>",
       nullptr},
      {"<Camera><gx:ViewerOptions><gx:option name=\"moonlight\"></gx:option></gx:ViewerOptions>"
       "</Camera>",
       nullptr},
      {"<gx:PlayTour><href>#t</href></gx:PlayTour>", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const auto placemark = ReadView(c.text);
    ASSERT_TRUE(placemark);
    AbstractView* const view = placemark->GetAbstractView();
    ASSERT_TRUE(view);
    view->AlmostEqual(view);
    const QString written = WriteBare(*placemark);
    EXPECT_TRUE(written.contains(c.written ? c.written : c.text)) << written.toStdString();
    EXPECT_EQ(written, WriteBare(*placemark->clone(true, nullptr)));
    const auto again = ReadObject(Write(*placemark));
    ASSERT_TRUE(again);
    EXPECT_EQ(written, WriteBare(*again));
  }
}

TEST_F(ViewTest, WhatAClientSetsIsWrittenBesideWhatWasRead) {
  const auto look = ReadViewOf<LookAt>("<LookAt><longitude>1</longitude></LookAt>");
  ASSERT_TRUE(look);
  EXPECT_EQ(0.0, look->GetRange());
  LookAtSchema::GetSingleton().heading.SetTypedObject(*look, 0.0);
  EXPECT_EQ("<LookAt><longitude>1</longitude><heading>0</heading></LookAt>",
            Element(Write(*look), "LookAt").remove('\n').remove('\t'));
  look->copy(*ReadViewOf<LookAt>("<LookAt><tilt>3</tilt></LookAt>"), true, nullptr);
  EXPECT_EQ("<LookAt><tilt>3</tilt></LookAt>",
            Element(Write(*look), "LookAt").remove('\n').remove('\t'));

  // Beyond the bounds a number is written as it was read, and counts as the bound.
  const auto far = ReadViewOf<LookAt>("<LookAt><tilt>120</tilt><range>0</range></LookAt>");
  EXPECT_EQ(90.0, far->GetTilt());
  EXPECT_EQ(0.1, far->GetRange());
  LookAtSchema::GetSingleton().tilt.CheckSet(*far, 90.0);
  EXPECT_EQ("<LookAt><tilt>90</tilt><range>0</range></LookAt>",
            Element(Write(*far), "LookAt").remove('\n').remove('\t'));
  const auto up = ReadViewOf<Camera>("<Camera><latitude>120</latitude><tilt>200</tilt></Camera>");
  EXPECT_EQ(120.0, up->GetLatitude());
  EXPECT_EQ(180.0, up->GetTilt());

  const RefPtr<Camera> camera(new Camera(10.0, 0.0, 30.0, kAbsolute, 500.0, 0.0, 7.0));
  EXPECT_EQ(500.0, camera->GetTilt());
  CameraSchema::GetSingleton().tilt.CheckSet(*camera, 501.0);
  EXPECT_EQ(180.0, camera->GetTilt());
  EXPECT_EQ("<Camera><longitude>10</longitude><latitude>0</latitude><altitude>30</altitude>"
            "<heading>0</heading><tilt>180</tilt><roll>7</roll><altitudeMode>absolute"
            "</altitudeMode></Camera>",
            Element(Write(*camera), "Camera").remove('\n').remove('\t'));
  // A range that nobody gave would be another one when it's read.
  EXPECT_EQ("", Element(Write(*RefPtr<LookAt>(new LookAt(KmlId(), QString()))), "range"));
}

TEST_F(ViewTest, ABoxFillsTheFieldOfView) {
  const struct {
    const char* what;
    double north, south, east, west, altitude;
  } cases[] = {
      {"a country", 50.0, 40.0, 10.0, 0.0, 0.0},
      {"wide and flat", 1.0, 0.0, 60.0, 0.0, 0.0},
      {"narrow and tall", 80.0, -80.0, 1.0, 0.0, 0.0},
      {"across the date line", 10.0, -10.0, 200.0, 170.0, 0.0},
      {"a cap at the pole", 90.0, 85.0, 180.0, -180.0, 0.0},
      {"antipodes", 90.0, -90.0, 180.0, 0.0, 0.0},
      {"more than there is", 180.0, -180.0, 720.0, 0.0, 0.0},
      {"high up", 1.0, 0.0, 1.0, 0.0, 100000.0},
      {"below the ground", 1.0, 0.0, 1.0, 0.0, -100000.0},
  };
  for (const auto& c : cases) {
    for (const float fov : {10.0F, 60.0F, 90.0F, 120.0F}) {
      SCOPED_TRACE(testing::Message() << c.what << " " << fov);
      const ExtentView view = GetExtentView(fov, fov, c.north, c.south, c.east, c.west, c.altitude);
      EXPECT_DOUBLE_EQ((c.north + c.south) / 2.0, view.latitude);
      EXPECT_DOUBLE_EQ((c.east + c.west) / 2.0, view.longitude);
      // One extent touches the edge of the view, unless the camera would come too near.
      const double altitude = std::max(c.altitude, 0.0);
      const double angle = std::max(GetEdgeAngle(c.north - c.south, altitude, view.range),
                                    GetEdgeAngle(c.east - c.west, altitude, view.range));
      if (view.range > 1000.0)
        EXPECT_NEAR(static_cast<double>(fov) / 2.0, angle, 1e-9);
      else
        EXPECT_LE(angle, static_cast<double>(fov) / 2.0);
      const ExtentView turned =
          GetExtentView(fov, fov, c.south, c.north, c.west, c.east, c.altitude);
      EXPECT_EQ(view.range, turned.range);
      EXPECT_EQ(view.longitude, turned.longitude);
    }
  }
  // Half the globe: the line of sight at 30 degrees to the axis meets the globe's rim.
  EXPECT_NEAR(Units::s_planet_radius * (std::sqrt(3.0) - 1.0),
              GetExtentView(60.0F, 60.0F, 0.0, 0.0, 90.0, -90.0, 0.0).range, 1e-6);
  EXPECT_EQ(1000.0, GetExtentView(60.0F, 40.0F, 5.0, 5.0, 6.0, 6.0, 0.0).range);
  // Each extent has its own field of view.
  const double range = GetExtentView(40.0F, 20.0F, 4.0, 0.0, 4.0, 0.0, 0.0).range;
  EXPECT_NEAR(10.0, GetEdgeAngle(4.0, 0.0, range), 1e-9);
}

TEST_F(ViewTest, CamerasAndLookAtsTakeTheView) {
  const double huge = std::numeric_limits<double>::infinity();
  const auto camera =
      ReadViewOf<Camera>("<Camera><heading>5</heading><tilt>x</tilt><roll>6</roll></Camera>");
  const auto look = ReadViewOf<LookAt>("<LookAt><heading>5</heading><tilt>6</tilt></LookAt>");
  ASSERT_TRUE(camera && look);
  const QString before = Write(*camera) + Write(*look);
  for (AbstractView* view :
       {static_cast<AbstractView*>(camera.get()), static_cast<AbstractView*>(look.get())}) {
    FieldLog log(*view);
    view->ContainExtents(60.0F, 60.0F, huge, 0.0, 10.0, 0.0);
    view->ContainExtents(0.0F, 60.0F, 10.0, 0.0, 10.0, 0.0, 0.0, 0.0);
    view->ContainExtents(60.0F, 60.0F, 10.0, 0.0, 10.0, 0.0, std::nan(""), 0.0);
    EXPECT_EQ(before, Write(*camera) + Write(*look));
  }
  for (AbstractView* view :
       {static_cast<AbstractView*>(camera.get()), static_cast<AbstractView*>(look.get())}) {
    FieldLog log(*view);
    view->ContainExtents(60.0F, 60.0F, 10.0, 0.0, 30.0, 20.0, 1000.0, 95.0);
    EXPECT_EQ("", log.take());
  }
  const double range = GetExtentView(60.0F, 60.0F, 10.0, 0.0, 30.0, 20.0, 1000.0).range;
  EXPECT_EQ(1000.0 + range, camera->GetAltitude());
  EXPECT_EQ(95.0, camera->GetTilt());
  EXPECT_EQ(0.0, camera->GetHeading());
  EXPECT_EQ(0.0, camera->GetRoll());
  EXPECT_EQ(5.0, camera->GetLatitude());
  EXPECT_EQ(25.0, camera->GetLongitude());
  EXPECT_EQ("<tilt>95</tilt>", Element(Write(*camera), "tilt"));
  EXPECT_EQ(range, look->GetRange());
  EXPECT_EQ(0.0, look->GetAltitude()) << "next to nothing beside the range";
  EXPECT_EQ("<altitude>0</altitude>", Element(Write(*look), "altitude"));

  look->ContainExtents(60.0F, 60.0F, 0.0, 0.0, 0.0, 0.0);
  EXPECT_EQ(1000.0, look->GetRange());
  for (const double altitude : {9.9, 10.0, -50.0}) {
    look->ContainExtents(60.0F, 60.0F, 0.0, 0.0, 0.0, 0.0, altitude, 0.0);
    EXPECT_EQ(altitude < 10.0 ? 0.0 : altitude, look->GetAltitude()) << altitude;
  }
}

TEST_F(ViewTest, ViewsAreAlikeByClassAndPlace) {
  const auto make = [](double longitude, double range, AltitudeMode mode) {
    return RefPtr<LookAt>(new LookAt(longitude, 2.0, range, 4.0, 5.0, 6.0, mode));
  };
  const auto look = make(1.0, 3.0, kAbsolute);
  EXPECT_TRUE(look->AlmostEqual(make(1.0000005, 3.0000009, kAbsolute).get()));
  EXPECT_FALSE(look->AlmostEqual(make(1.000002, 3.0, kAbsolute).get()));
  EXPECT_FALSE(look->AlmostEqual(make(1.0, 3.000002, kAbsolute).get()));
  EXPECT_FALSE(look->AlmostEqual(make(1.0, 3.0, kClampToGround).get()));
  EXPECT_FALSE(look->AlmostEqual(make(1.0, std::nan(""), kAbsolute).get()));
  EXPECT_FALSE(look->AlmostEqual(nullptr));
  const RefPtr<Camera> camera(new Camera(1.0, 2.0, 6.0, kAbsolute, 4.0, 5.0, 3.0));
  EXPECT_FALSE(look->AlmostEqual(camera.get()));
  EXPECT_TRUE(look->IsAltitudeAbsolute());
  EXPECT_EQ(kRelativeToGround, ReadViewOf<Camera>("<Camera/>")->GetAltitudeMode());
  EXPECT_EQ(kClampToGround, ReadViewOf<LookAt>("<LookAt/>")->GetAltitudeMode());
}

TEST_F(ViewTest, ATourIsNamedByAnAbsoluteUrl) {
  const auto play = ReadViewOf<PlayTour>("<gx:PlayTour><href>a.kml#t</href></gx:PlayTour>");
  const auto same = ReadViewOf<PlayTour>("<gx:PlayTour><href>./a.kml#t</href></gx:PlayTour>");
  ASSERT_TRUE(play && same);
  EXPECT_TRUE(play->AlmostEqual(same.get()));
  EXPECT_EQ("http://example.com/dir/a.kml#t", play->href());
  EXPECT_EQ("<href>a.kml#t</href>", Element(Write(*play), "href"));
  PlayTourSchema::GetSingleton().href.SetTypedObject(*play, "b.kml#t");
  EXPECT_EQ("b.kml#t", play->href());
  EXPECT_FALSE(play->AlmostEqual(same.get()));
  EXPECT_FALSE(play->AlmostEqual(nullptr));
  EXPECT_FALSE(play->IsAltitudeAbsolute());
  EXPECT_EQ(kClampToGround, play->GetAltitudeMode());
  // Read into another document it still leads to the same tour.
  const auto folder = ReadAt("http://other.com/x.kml", "<Folder/>");
  const auto placemark = ReadView("<gx:PlayTour><href>#t</href></gx:PlayTour>");
  EXPECT_TRUE(static_cast<Folder&>(*folder).AddChild(*placemark));
  EXPECT_EQ("<href>http://example.com/dir/doc.kml#t</href>", Element(Write(*folder), "href"));
}

TEST_F(ViewTest, AFeatureViewRefersToItsFeature) {
  const auto folder = Read<Folder>("<Folder><Placemark><name>p</name></Placemark></Folder>");
  AbstractFeature* const placemark = folder->GetChild(0);
  const RefPtr<BoundingBoxView> view(new BoundingBoxView(KmlId(), QString()));
  EXPECT_EQ(nullptr, view->GetFeature());
  EXPECT_TRUE(view->SetFeature(placemark));
  EXPECT_EQ(folder.get(), placemark->GetParent());
  const RefPtr<TourView> tour(new TourView(KmlId(), QString()));
  EXPECT_FALSE(tour->SetFeature(placemark));
  EXPECT_TRUE(tour->SetFeature(nullptr));
  EXPECT_FALSE(view->AlmostEqual(tour.get()));
  EXPECT_TRUE(view->AlmostEqual(
      static_cast<AbstractView*>(static_cast<BoundingBoxView*>(view->clone(true, nullptr).get()))));
  EXPECT_TRUE(view->IsAltitudeAbsolute());
  EXPECT_EQ(kAbsolute, view->GetAltitudeMode());
  EXPECT_FALSE(Write(*view).contains("Placemark")) << "it's its folder's";
  EXPECT_TRUE(folder->RemChild(*placemark));
  EXPECT_TRUE(Write(*view).contains("<name>p</name>"));
  EXPECT_TRUE(view->SetFeature(nullptr));
  EXPECT_EQ(nullptr, view->GetFeature());
  EXPECT_EQ(nullptr, ReadView("<BoundingBoxView/>")->GetAbstractView()) << "no view of a document";
}

TEST_F(ViewTest, SwitchesAreFoundByName) {
  const auto camera = ReadViewOf<Camera>(
      "<Camera><gx:ViewerOptions><gx:option name=\"sunlight\"/>"
      "<gx:option name=\"historicalimagery\" enabled=\"0\"/><gx:option name=\"streetview\"/>"
      "</gx:ViewerOptions></Camera>");
  ASSERT_TRUE(camera && camera->GetViewState());
  ViewState& state = *camera->GetViewState();
  EXPECT_EQ(3, state.GetRenderStateCount());
  EXPECT_EQ(2 + 8, state.GetIntRepresentation());
  EXPECT_EQ(1, state.FindRenderState(kHistoricalImagery));
  EXPECT_EQ(nullptr, state.GetRenderState(-1));
  EXPECT_EQ(nullptr, state.GetRenderState(3));
  const RefPtr<RenderState> second(new RenderState(KmlId(), QString()));
  RenderStateSchema::GetSingleton().name.SetTypedObject(*second, kSunlight);
  EXPECT_FALSE(state.AddRenderState(second.get()));
  EXPECT_TRUE(state.RemRenderState(0));
  EXPECT_TRUE(state.AddRenderState(second.get()));
  EXPECT_EQ(2, state.FindRenderState(kSunlight));
  EXPECT_TRUE(state.RemRenderState(second.get()));
  EXPECT_EQ(8, state.GetIntRepresentation());

  FieldLog log(*camera);
  camera->SetViewState(nullptr);
  camera->SetFovX(-1.0);
  camera->SetFovX(60.0);
  camera->SetTimePrimitive(new TimeSpan(KmlId(), QString()));
  EXPECT_EQ("ViewerOptions horizFov TimePrimitive", log.take());
}

TEST_F(ViewTest, AViewVolumeIsEmptyWithoutAnAngle) {
  const auto read = [this](const char* fields) {
    return Read<ViewVolume>(QStringLiteral("<ViewVolume>%1</ViewVolume>").arg(fields));
  };
  const auto whole = read("<leftFov>-60</leftFov><rightFov>60</rightFov><bottomFov>-45</bottomFov>"
                          "<topFov>45</topFov><near>10</near>");
  EXPECT_FALSE(whole->isEmpty());
  EXPECT_TRUE(whole->equals(*whole));
  EXPECT_TRUE(read("<leftFov>-60</leftFov><rightFov>60</rightFov>")->isEmpty());
  EXPECT_TRUE(read("<bottomFov>-60</bottomFov><topFov>60</topFov>")->isEmpty());
  EXPECT_FALSE(whole->equals(*read("<near>10</near>")));
}

} // namespace vorrel::kestan
