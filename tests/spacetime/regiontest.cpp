#include "kestan/spacetime/region.h"

#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/fastmath.h"
#include "kestan/host/system.h"
#include "kestan/spacetime/latlonaltboxschema.h"
#include "kestan/spacetime/lodschema.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

#include <cmath>
#include <utility>

namespace vorrel::kestan {

class RegionTest : public KmlTest {
protected:
  RegionTest() { System::s_cur_frame = 1; }

  RefPtr<Folder> ReadFolder(const QString& content) {
    return Read<Folder>("<Folder xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">" + content +
                        "</Folder>");
  }
  RefPtr<Region> ReadRegion(const QString& content) {
    return Read<Region>("<Region xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">" + content +
                        "</Region>");
  }
  QString WriteBare(const SchemaObject& object) {
    return Element(Write(object), object.getType()).remove('\n').remove('\t');
  }
  static AbstractFeature* Find(const QString& id) {
    return static_cast<AbstractFeature*>(SchemaObject::find(GetDocumentUrl(), id));
  }
  /// A placemark with a region that replaces the feature with the id `target`.
  static QString Replacing(const QString& id, const QString& target) {
    return QStringLiteral("<Placemark id=\"%1\"><Region><Lod><gx:hrefToReplace>#%2"
                          "</gx:hrefToReplace></Lod></Region></Placemark>")
        .arg(id, target);
  }
};

TEST_F(RegionTest, RegionsComeBackWithWhatTheySaid) {
  const char* const cases[] = {
      "",
      "<Lod></Lod>",
      "<Lod><minLodPixels>8</minLodPixels></Lod>",
      "<Lod><maxLodPixels>-1</maxLodPixels><minFadeExtent>0</minFadeExtent></Lod>",
      "<LatLonAltBox></LatLonAltBox>",
      "<LatLonAltBox><north>1</north></LatLonAltBox><Lod><minLodPixels>8</minLodPixels>"
      "<maxLodPixels>16</maxLodPixels><gx:hrefToReplace>#p</gx:hrefToReplace></Lod>",
  };
  for (const QString content : cases) {
    SCOPED_TRACE(content.toStdString());
    const auto region = ReadRegion(content);
    ASSERT_TRUE(region);
    LatLonAltBox* const box = region->GetLatLonAltBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box, region->GetLatLonAltBox());
    EXPECT_EQ(region.get(), box->GetOwner(0));
    box->SetAdjustedAltitudes(0.0F, 0.0F);
    region->UpdateExtents();
    region->Update(BoundingVolume::kIntersects, 0.5F);
    const QString written = QStringLiteral("<Region>%1</Region>").arg(content);
    EXPECT_EQ(written, WriteBare(*region));
    EXPECT_EQ(written, WriteBare(*region->clone(true, nullptr)));
  }
  // The whole globe, and once it's changed it's the region's own.
  const auto region = ReadRegion("");
  EXPECT_EQ(-90.0, region->GetLatLonAltBox()->GetSouth());
  EXPECT_EQ(180.0, region->GetLatLonAltBox()->GetEast());
  LatLonAltBoxSchema::GetSingleton().minAltitude.SetTypedObject(*region->GetLatLonAltBox(), 5.0F);
  EXPECT_TRUE(WriteBare(*region).contains("<west>-180</west><minAltitude>5</minAltitude>"));
  EXPECT_EQ("<Lod><minLodPixels>0</minLodPixels><maxLodPixels>-1</maxLodPixels><minFadeExtent>0"
            "</minFadeExtent><maxFadeExtent>0</maxFadeExtent></Lod>",
            WriteBare(*RefPtr<Lod>(new Lod(KmlId(), QString()))));
}

TEST_F(RegionTest, AnUpdateTellsOfChanges) {
  const struct {
    BoundingVolume::Result result;
    float opacity;
    bool active;
    const char* told;
  } steps[] = {
      {BoundingVolume::kInside, 0.0F, false, ""},
      {BoundingVolume::kOutside, 1.0F, false, "lodOpacity"},
      {BoundingVolume::kIntersects, 1.0F, true, "active"},
      {BoundingVolume::kInside, 1.0F, true, ""},
      {BoundingVolume::kInside, 0.25F, true, "lodOpacity"},
      {BoundingVolume::kInside, std::nanf(""), false, "lodOpacity active"},
      {BoundingVolume::kInside, std::nanf(""), false, ""},
      {BoundingVolume::kInside, -1.0F, false, "lodOpacity"},
  };
  const auto region = ReadRegion("");
  EXPECT_EQ(BoundingVolume::kOutside, region->GetLastResult());
  EXPECT_EQ(Region::kNoFrame, region->GetLastUpdateFrame());
  EXPECT_EQ(Region::kNoFrame, region->GetLastActiveFrame());
  FieldLog log(*region);
  std::uint32_t lastActive = Region::kNoFrame;
  for (const auto& step : steps) {
    ++System::s_cur_frame;
    SCOPED_TRACE(System::s_cur_frame);
    EXPECT_EQ(step.active, region->Update(step.result, step.opacity));
    EXPECT_EQ(step.active, region->IsActive());
    EXPECT_EQ(step.told, log.take());
    EXPECT_EQ(step.result, region->GetLastResult());
    EXPECT_EQ(System::s_cur_frame, region->GetLastUpdateFrame());
    if (step.active)
      lastActive = System::s_cur_frame;
    EXPECT_EQ(lastActive, region->GetLastActiveFrame());
  }
}

TEST_F(RegionTest, RegionsAboveKnowWhenOneBelowWasActive) {
  const auto outer = ReadFolder("<Region/><Folder><Folder><Region/><Placemark><Region/>"
                                "</Placemark></Folder><Placemark><Region/></Placemark></Folder>");
  const auto* middle = static_cast<Folder*>(outer->GetChild(0));
  const auto* inner = static_cast<Folder*>(middle->GetChild(0));
  System::s_cur_frame = 7;
  inner->GetChild(0)->GetRegion()->Update(BoundingVolume::kInside, 1.0F);
  EXPECT_EQ(7U, inner->GetRegion()->GetLastActiveFrame());
  EXPECT_EQ(7U, outer->GetRegion()->GetLastActiveFrame());
  EXPECT_EQ(Region::kNoFrame, middle->GetChild(1)->GetRegion()->GetLastActiveFrame());
  System::s_cur_frame = 8;
  inner->GetChild(0)->GetRegion()->Update(BoundingVolume::kOutside, 1.0F);
  EXPECT_EQ(7U, outer->GetRegion()->GetLastActiveFrame());
}

TEST_F(RegionTest, TheFeatureThatIsReplacedHidesMeanwhile) {
  const auto folder = ReadFolder("<Placemark id=\"p\"/><Placemark id=\"q\"/>" +
                                 Replacing("r", "p") + "<Style id=\"s\"/>");
  AbstractFeature& p = *Find("p");
  AbstractFeature& q = *Find("q");
  AbstractFeature& r = *Find("r");
  Region& region = *r.GetRegion();
  EXPECT_TRUE(region.Update(BoundingVolume::kInside, 0.98F));
  EXPECT_TRUE(p.isVisible()) << "it still shines through";
  region.Update(BoundingVolume::kInside, 0.99F);
  EXPECT_FALSE(p.isVisible());
  EXPECT_TRUE(p.GetVisibility()) << "its own wish";

  // A region that is hidden itself hides nothing, and needs to be wholly opaque to begin anew.
  r.SetVisibility(false);
  EXPECT_TRUE(p.isVisible());
  r.SetVisibility(true);
  EXPECT_TRUE(p.isVisible());
  region.Update(BoundingVolume::kInside, 1.0F);
  r.SetVisibility(false);
  EXPECT_TRUE(p.isVisible());
  r.SetVisibility(true);
  EXPECT_FALSE(p.isVisible());

  region.GetLod()->SetHrefToReplace("#q");
  region.Update(BoundingVolume::kInside, 1.0F);
  EXPECT_TRUE(p.isVisible());
  EXPECT_FALSE(q.isVisible());
  region.GetLod()->SetHrefToReplace("doc.kml#none");
  region.UpdateFeatureToReplace();
  EXPECT_TRUE(q.isVisible());
  EXPECT_EQ(nullptr, region.GetFeatureToReplace());
  for (const char* none : {"#s", ""}) { // no feature
    region.GetLod()->SetHrefToReplace("#p");
    region.Update(BoundingVolume::kInside, 1.0F);
    EXPECT_FALSE(p.isVisible());
    region.GetLod()->SetHrefToReplace(none);
    region.Update(BoundingVolume::kInside, 1.0F);
    EXPECT_TRUE(p.isVisible());
  }
  region.GetLod()->SetHrefToReplace("#p");
  region.Update(BoundingVolume::kInside, 1.0F);
  region.Update(BoundingVolume::kOutside, 1.0F);
  EXPECT_TRUE(p.isVisible());
  region.Update(BoundingVolume::kInside, 1.0F);
  EXPECT_FALSE(p.isVisible());
  folder->RemChild(r);
  EXPECT_TRUE(p.isVisible()) << "a region that goes leaves nothing hidden";
}

TEST_F(RegionTest, ChainsAndRingsOfReplacementEnd) {
  const auto readChain = [this](int count) {
    QString content = "<Placemark id=\"p0\"/>";
    for (int i = 0; i < count; ++i)
      content += Replacing(QStringLiteral("p%1").arg(i + 1), QStringLiteral("p%1").arg(i));
    const auto folder = ReadFolder(content);
    for (int i = 1; i <= count; ++i)
      folder->GetChild(i)->GetRegion()->Update(BoundingVolume::kInside, 1.0F);
    return folder;
  };
  constexpr int kCount = 20;
  const auto folder = readChain(kCount);
  // One shows, the next one is hidden, all down from the one at the end, which nothing replaces.
  for (const bool isLastShown : {true, false}) {
    folder->GetChild(kCount)->SetVisibility(isLastShown);
    for (int i = kCount - 1; i >= 0; --i)
      EXPECT_NE(folder->GetChild(i)->isVisible(), folder->GetChild(i + 1)->isVisible()) << i;
  }
  readChain(20000)->GetChild(20000)->SetVisibility(false);

  // In rings there's no answer, but an end.
  const auto ring = ReadFolder(Replacing("a", "b") + Replacing("b", "c") + Replacing("c", "a") +
                               Replacing("d", "d"));
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 4; ++i)
      ring->GetChild(i)->GetRegion()->Update(BoundingVolume::kInside, 1.0F);
    ring->SetVisibility(round == 1);
  }
}

TEST_F(RegionTest, WhoHearsOfARegionMayEndIt) {
  struct Ender final : ObjectObserver {
    using ObjectObserver::ObjectObserver;
    void OnFieldChanged(const FieldChangedEvent&) override {
      Folder* const ended = std::exchange(folder, nullptr);
      while (ended && ended->GetChildCount() > 0)
        ended->RemChild(0);
    }
    void OnPreDelete(const PreDeleteEvent&) override { SetObserved(nullptr); }
    Folder* folder = nullptr;
  };
  for (const bool isTarget : {false, true}) {
    const auto folder = ReadFolder("<Placemark id=\"p\"/>" + Replacing("r", "p"));
    AbstractFeature& r = *Find("r");
    Ender ender(isTarget ? static_cast<SchemaObject&>(*Find("p")) : *r.GetRegion());
    ender.folder = folder.get();
    r.GetRegion()->Update(BoundingVolume::kInside, 1.0F);
    EXPECT_EQ(0, folder->GetChildCount());
  }
}

TEST_F(RegionTest, FlatnessFollowsTheBox) {
  const auto region = ReadRegion("");
  region->UpdateExtents();
  EXPECT_EQ(0.0F, region->GetFlatness()) << "there's no box";
  LatLonAltBox& box = *region->GetLatLonAltBox();
  box.SetAdjustedAltitudes(0.0F, 0.01F);
  for (const double north : {0.25, 0.125}) {
    box.SetLatLonExtent(north, 0.0, 0.25, 0.0, AbstractXform::kEdgeNone);
    region->UpdateExtents();
    EXPECT_EQ(math::ComputeFlatness(north, 0.0, 0.25, 0.0, 0.0, static_cast<double>(0.01F)),
              region->GetFlatness());
  }
}

} // namespace vorrel::kestan
