#include "kestan/geometry/model.h"

#include "kestan/geometry/alias.h"
#include "kestan/geometry/locationschema.h"
#include "kestan/geometry/multigeometry.h"
#include "kestan/geometry/orientation.h"
#include "kestan/geometry/resourcemap.h"
#include "kestan/geometry/scale.h"
#include "kestan/host/resourcedictionary.h"
#include "kestan/link/fetchobserver.h"
#include "kestan/link/link.h"
#include "kestan/link/viewparams.h"
#include "tests/geometry/geometrytest.h"

#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace vorrel::kestan {

class ModelTest : public GeometryTest {
protected:
  /// Written without the white space between elements.
  QString Compact(const Geometry& shape) const {
    QString text = WriteShape(shape);
    return text.remove(QRegularExpression("\\s*\n\\s*"));
  }
};

TEST_F(ModelTest, ADocumentsModelComesBackAsItWasReadAlsoAfterItWasAsked) {
  const char* const cases[] = {
      "",
      "<Location><longitude>1</longitude></Location>",
      "<Location></Location><Orientation><tilt>0</tilt></Orientation>",
      "<Scale><y>1</y></Scale><Link><href>http://example.com/a.dae</href></Link>",
      "<Location id=\"l\"><altitude>-5</altitude></Location><Link></Link>",
      "<altitudeMode>absolute</altitudeMode><Orientation><heading>1</heading><tilt>2</tilt>"
      "<roll>3</roll></Orientation><ResourceMap></ResourceMap>",
      "<ResourceMap><Alias><targetHref>../t.png</targetHref><sourceHref>t</sourceHref></Alias>"
      "</ResourceMap>",
  };
  for (const QString text : cases) {
    SCOPED_TRACE(text.toStdString());
    const auto model = ReadShape<Model>("<Model>" + text + "</Model>");
    ASSERT_TRUE(model);
    model->GetModelDataLink()->setViewParams(ViewParams());
    model->SetCoord(model->GetCoord());
    model->SetScale(model->GetScaleVec());
    model->SetFetchState(net::kFetchSucceeded);
    model->GetBBox();
    EXPECT_EQ("<Model>" + text + "</Model>", Compact(*model));
    const auto clone = model->clone(true, nullptr);
    EXPECT_EQ("<Model>" + text + "</Model>", Compact(static_cast<const Model&>(*clone)));
  }
}

TEST_F(ModelTest, WhatIsSetIsWrittenWithinItsBounds) {
  const auto model = ReadShape<Model>("<Model><Location><longitude>190</longitude><latitude>100"
                                      "</latitude></Location></Model>");
  ASSERT_TRUE(model);
  EXPECT_EQ("180,100,0", Coords(*model));
  EXPECT_EQ(Vec3<double>(1, 1, 1), model->GetScaleVec());
  FieldLog log(*model);
  model->SetOrientation(Vec3<double>(1, 2, 400));
  model->SetScale(Vec3<double>(1, 2, 1));
  model->SetCoord(At(5, 6, 7));
  model->SetAltitude(At(0, 0, 8).z);
  const QString notices = log.take();
  model->SetCoord(At(5, 6, 8)); // as it is
  EXPECT_EQ("", log.take());
  EXPECT_EQ(2, notices.count("Location"));
  EXPECT_TRUE(notices.contains("Orientation") && notices.contains("Scale"));
  EXPECT_EQ("<Model><Location><longitude>5</longitude><latitude>6</latitude><altitude>8</altitude>"
            "</Location><Orientation><heading>360</heading><tilt>1</tilt><roll>2</roll>"
            "</Orientation><Scale><x>1</x><y>2</y><z>1</z></Scale></Model>",
            Compact(*model));
  EXPECT_EQ(Vec3<double>(1, 2, 360), model->GetOrientationVec());

  model->SetScale(RefPtr<Scale>());
  model->SetLocation(RefPtr<Location>());
  EXPECT_EQ(Vec3<double>(1, 1, 1), model->GetScaleVec());
  model->SetCoord(At(1, 1));
  EXPECT_EQ(0, model->GetCoordCount());
  EXPECT_EQ(mmvector<double>{0.0}, Altitudes(*model));

  // One that a client makes says all.
  const RefPtr<Model> made(new Model(At(1, 2, 3), nullptr, KmlId("m", "http://u/"), "http://u/"));
  const QString text = Compact(*made);
  for (const char* part : {"<longitude>1<", "<altitude>3<", "<roll>0<", "<z>1<", "<Link>"})
    EXPECT_TRUE(text.contains(part)) << part;
  EXPECT_EQ(made.get(), SchemaObject::find("http://u/", "m")) << "parts take no id";
}

TEST_F(ModelTest, TheBoxIsWhereTheModelIsAndWhatTheClientSays) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  struct Case {
    BoundingBox<double> box;
    const char* written;
  };
  const Vec3<double> p = At(90, 45, 0);
  const Case cases[] = {
      {{At(80, 40, 0), At(100, 50, 9)}, "80 40 0 100 50 9"},
      {{At(91, 40, 0), At(100, 50, 9)}, "90 40 0 100 50 9"}, // beside it
      {{At(80, 50, 5), At(89, 40, 9)}, "90 45 0 90 45 0"},   // empty, with a corner close by
      {{At(-170, -80), At(-100, -50)}, ""},                  // elsewhere
      {{At(80, 40, 0), {p.x + 0.1, p.y + 0.1, 2e25}}, ""},   // without an end
      {{{kNone, p.y, 0}, At(90, 45)}, ""},
      {{{-kInf, p.y, 0}, At(90, 45)}, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Box(c.box).toStdString());
    const RefPtr<MultiGeometry> around(new MultiGeometry(KmlId(), ""));
    const RefPtr<Model> model(new Model(p, nullptr, KmlId(), ""));
    around->AddGeometry(*model);
    EXPECT_EQ("90 45 0 90 45 0", Box(around->GetBBox()));
    FieldLog log(*model);
    model->SetBBoxExtension(c.box);
    EXPECT_EQ(*c.written ? "bound" : "", log.take());
    model->SetBBoxExtension(c.box);
    EXPECT_EQ("", log.take()) << "the same again";
    EXPECT_EQ(*c.written ? c.written : "90 45 0 90 45 0", Box(around->GetBBox()));
  }
  // Also by the field of the part alone.
  const RefPtr<MultiGeometry> around(new MultiGeometry(KmlId(), ""));
  const RefPtr<Model> model(new Model(p, nullptr, KmlId(), ""));
  around->AddGeometry(*model);
  around->GetBBox();
  LocationSchema::GetSingleton().latitude.SetTypedObject(*model->GetLocation(), 50.0);
  EXPECT_EQ("90 50 0 90 50 0", Box(around->GetBBox()));
  model->SetCoord({kNone, kInf, 0.0});
  EXPECT_EQ("empty", Box(around->GetBBox()));
}

TEST_F(ModelTest, TheFetchOfItsFileIsTold) {
  struct FetchLog : FetchObserver {
    void OnFetchChanged(const Event& event) override { last = event; }
    Event last{};
  } heard;
  const RefPtr<Model> model(new Model(KmlId(), ""));
  FieldLog log(*model);
  model->SetFetchState(net::kFetchCancelled);
  model->SetFetchState(net::kFetchCancelled);
  EXPECT_EQ("fetchState", log.take());
  EXPECT_EQ(model.get(), heard.last.object);
  EXPECT_EQ(model->GetModelDataLink(), heard.last.link);
  EXPECT_EQ(net::kFetchCancelled, heard.last.state);
  model->refresh();
  EXPECT_EQ(1, model->GetModelDataLink()->GetRefreshCounter());
}

TEST_F(ModelTest, TheMapOfFilesFollowsADictionary) {
  const auto model = ReadShape<Model>(
      "<Model><ResourceMap><Alias><targetHref>1</targetHref><sourceHref>a</sourceHref></Alias>"
      "<Alias><targetHref>2</targetHref><sourceHref>b</sourceHref></Alias>"
      "<Alias><targetHref>3</targetHref><sourceHref>a</sourceHref></Alias>"
      "<Alias><targetHref>lost</targetHref></Alias></ResourceMap></Model>");
  ASSERT_TRUE(model);
  const RefPtr<ResourceMap> map(model->GetResourceMap());
  EXPECT_EQ("1", map->FindTarget("a"));
  EXPECT_TRUE(map->FindTarget("z").isNull());
  ResourceDictionary dictionary;
  map->GetCopy(dictionary, "m");
  EXPECT_EQ("3", *dictionary.Find("a", "m"));
  EXPECT_FALSE(Compact(*model).contains("lost")) << "nothing is named";

  dictionary.Clear();
  dictionary.Insert("a", "", "9");
  dictionary.Insert("c", "", "8");
  dictionary.Insert("d", "another", "7");
  FieldLog log(*map);
  for (const char* notices : {"Alias", ""}) {
    map->SetAll(dictionary, QString());
    EXPECT_EQ(notices, log.take());
    ASSERT_EQ(2U, map->GetAliases().size());
    EXPECT_EQ("9", map->FindTarget("a"));
    EXPECT_EQ("8", map->FindTarget("c"));
  }
  map->AddMapping("e", "6");
  EXPECT_EQ("6", map->FindTarget("e"));
  map->removeAll();
  EXPECT_TRUE(map->GetAliases().empty());
  EXPECT_EQ("", log.take());

  // The model gets an id that's the library's affair.
  model->InvalidateTexturePaths();
  model->SetReferencedTexturePaths(dictionary);
  EXPECT_TRUE(model->GetId().startsWith("model_"));
  EXPECT_EQ(model.get(), SchemaObject::find(model->GetKmlId()));
  const QString expected = "<Model><ResourceMap><Alias><targetHref>9</targetHref><sourceHref>a"
                           "</sourceHref></Alias><Alias><targetHref>8</targetHref><sourceHref>c"
                           "</sourceHref></Alias></ResourceMap></Model>";
  EXPECT_EQ(expected, Compact(*model));
  const auto clone = model->clone(true, nullptr);
  EXPECT_EQ(expected, Compact(static_cast<const Model&>(*clone)));
  dictionary.Clear();
  model->GetReferencedTexturePaths(dictionary);
  EXPECT_EQ("9", *dictionary.Find("a", model->GetId()));
  model->SetReferencedTexturePaths(ResourceDictionary());
  EXPECT_TRUE(model->GetResourceMap()->GetAliases().empty());
}

} // namespace vorrel::kestan
