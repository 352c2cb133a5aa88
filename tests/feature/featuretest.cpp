#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/channel.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/feature/globe.h"
#include "kestan/feature/planet.h"
#include "kestan/feature/visibilityobserver.h"
#include "kestan/feature/window.h"
#include "kestan/spacetime/time.h"
#include "kestan/spacetime/timestamp.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"
#include "tests/support/observers.h"

#include <cmath>
#include <limits>

namespace vorrel::kestan {

using FeatureTest = KmlTest;

namespace {

const AbstractFeatureSchema& Fields() { return AbstractFeatureSchema::GetSingleton(); }

RefPtr<Folder> MakeFolder(const QString& name) {
  RefPtr<Folder> folder(new Folder(KmlId(), QString()));
  folder->SetName(name);
  return folder;
}

RefPtr<Placemark> MakePlacemark(const QString& name) {
  RefPtr<Placemark> placemark = Placemark::CreatePlacemark();
  placemark->SetName(name);
  return placemark;
}

RefPtr<TimeStamp> MakeTime(const char* text) {
  RefPtr<TimeStamp> time(new TimeStamp(KmlId(), QString()));
  time->SetWhen(DateTime::FromString(QString(text)));
  return time;
}

} // namespace

TEST_F(FeatureTest, HidingAFolderHidesWhatIsBelowAndKeepsItsWishes) {
  const auto folder = Read<Folder>("<Folder><Folder><Placemark><name>a</name></Placemark>"
                                   "<Placemark><visibility>0</visibility></Placemark></Folder>"
                                   "</Folder>");
  const RefPtr<Folder> inner(static_cast<Folder*>(folder->GetChild(0)));
  AbstractFeature* const a = inner->GetChild(0);
  AbstractFeature* const b = inner->GetChild(1);
  EXPECT_TRUE(a->isVisible());
  EXPECT_FALSE(b->isVisible());

  folder->SetVisibility(false);
  EXPECT_FALSE(a->isVisible());
  EXPECT_TRUE(a->GetVisibility());
  folder->SetVisibility(true);
  EXPECT_TRUE(a->isVisible());
  EXPECT_FALSE(b->isVisible());

  inner->SetVisibility(false);
  folder->SetVisibility(false);
  b->EnsureVisible();
  EXPECT_TRUE(a->isVisible());
  EXPECT_TRUE(b->isVisible());

  a->SetHiddenByLod(true);
  EXPECT_FALSE(a->isVisible());
  EXPECT_TRUE(a->GetVisibility());

  folder->SetVisibility(false);
  Fields().opacity.SetTypedObject(*folder, 0.5F);
  inner->SetParent(nullptr);
  float opacity = 0;
  EXPECT_TRUE(inner->isVisible(&opacity)) << "without a folder only its own wish counts";
  EXPECT_EQ(1.0F, opacity);
}

TEST_F(FeatureTest, ForceVisibleOverridesAndTellsTheObserversAlways) {
  class VisibilityLog final : public AbstractFeature::VisibilityObserver {
  public:
    void OnVisibilityChanged(const Event& event) override { names_ += event.feature.GetName(); }
    QString take() { return std::exchange(names_, QString()); }

  private:
    QString names_;
  };
  VisibilityLog visibility;
  const auto feature = MakePlacemark("a");
  FieldLog log(*feature);
  feature->SetForceVisible(true);
  EXPECT_EQ("a", visibility.take());
  EXPECT_EQ("", log.take()) << "it was visible already";
  feature->SetForceVisible(true);
  EXPECT_EQ("", visibility.take());
  feature->SetVisibility(false);
  EXPECT_TRUE(feature->isVisible());
  EXPECT_EQ("a", visibility.take());
  log.take();
  feature->SetForceVisible(false);
  EXPECT_FALSE(feature->isVisible());
  EXPECT_EQ("visibility", log.take());
}

TEST_F(FeatureTest, AnOpacityThatIsNoNumberEndsItsUpdates) {
  const auto folder = MakeFolder("f");
  const auto child = MakePlacemark("p");
  folder->AddChild(*child);
  Fields().opacity.SetTypedObject(*child, 0.0F);
  Fields().opacity.SetTypedObject(*folder, std::numeric_limits<float>::infinity());
  EXPECT_TRUE(std::isnan(child->GetInheritedOpacity()));
  Fields().opacity.SetTypedObject(*folder, std::numeric_limits<float>::quiet_NaN());
  Fields().opacity.SetTypedObject(*folder, 1.0F);
  EXPECT_EQ(0.0F, child->GetInheritedOpacity());
}

TEST_F(FeatureTest, TheNearestTimeIsInheritedAndDecidesVisibility) {
  const auto folder = MakeFolder("f");
  const auto child = MakePlacemark("p");
  child->SetParent(folder.get());
  const RefPtr<TimeStamp> outer = MakeTime("2007");
  const RefPtr<TimeStamp> own = MakeTime("2008");
  Time::setEnabled(true);
  Time::SetNow(DateTime::FromString("2008"));
  EXPECT_FALSE(child->IsTimedFeature());

  FieldLog log(*child);
  folder->SetTimePrimitive(outer.get());
  EXPECT_EQ("TimePrimitive", log.take());
  EXPECT_EQ(outer.get(), child->GetInheritedTime());
  EXPECT_FALSE(child->isVisible());
  EXPECT_TRUE(folder->GetBit(kBitTimedFeature));
  EXPECT_FALSE(child->GetBit(kBitTimedFeature));

  child->SetTimePrimitive(own.get());
  EXPECT_TRUE(child->isVisible());
  EXPECT_TRUE(child->GetBit(kBitTimedFeature));
  child->SetTimePrimitive(nullptr);
  EXPECT_EQ(outer.get(), child->GetInheritedTime());
  child->SetParent(nullptr);
  EXPECT_EQ(nullptr, child->GetInheritedTime());
  EXPECT_TRUE(child->isVisible());
  Time::setEnabled(false);
  Time::SetNow(DateTime());
}

TEST_F(FeatureTest, TimeRangesCoverVisibleFeatures) {
  const auto folder = Read<Folder>(
      "<Folder><Placemark><TimeStamp><when>2008-01-01T01:00:00+01:00</when></TimeStamp></Placemark>"
      "<Placemark><TimeStamp><when>2007</when></TimeStamp></Placemark></Folder>");
  DateTime begin;
  DateTime end;
  int instants = 0;
  int spans = 0;
  EXPECT_FALSE(MakeFolder("empty")->GetTimeRange(begin, end, &instants, &spans));
  EXPECT_TRUE(folder->GetTimeRange(begin, end, &instants, &spans));
  EXPECT_EQ(DateTime::FromString("2007"), begin);
  EXPECT_EQ("2008-01-01T00:00:00Z", end.ToString());
  EXPECT_EQ(2, instants);
  EXPECT_EQ(0, spans);
  folder->GetChild(1)->SetVisibility(false);
  begin = end = DateTime();
  EXPECT_TRUE(folder->GetTimeRange(begin, end, nullptr, nullptr));
  EXPECT_EQ("2008-01-01T00:00:00Z", begin.ToString());
}

TEST_F(FeatureTest, SiblingsAndAncestors) {
  const auto top = Read<Folder>("<Folder><Folder id='a'/><Placemark id='b'/></Folder>");
  const auto* a = ById<Folder>("a");
  const auto* b = ById<Placemark>("b");
  EXPECT_EQ(b, a->GetNextSiblingNode());
  EXPECT_EQ(a, b->GetPreviousSiblingNode());
  for (const AbstractFeature* end :
       {a->GetPreviousSiblingNode(), b->GetNextSiblingNode(), top->GetNextSiblingNode()})
    EXPECT_EQ(nullptr, end);
  EXPECT_TRUE(a->IsDescendantOf(*top) && top->IsSelfOrDescendantOf(*top));
  EXPECT_FALSE(top->IsDescendantOf(*top) || top->IsSelfOrDescendantOf(*a));
}

TEST_F(FeatureTest, EntityReplacement) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"$[name] $[id] $[name]", "N i N"},
      {"$[other] $[name]", "$[other] $[name]"},
      {"$[name] $[other] $[id]", "N $[other] $[id]"},
      {"$[a $[name]", "$[a $[name]"},
      {"] $[name]", "] N"},
      {"$[]", "$[]"},
  };
  const auto feature = Read<Placemark>("<Placemark id=\"i\"><name>N</name></Placemark>");
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(expected, feature->ApplyEntityReplacement(text)) << text;
}

TEST_F(FeatureTest, EntityReplacementEndsForValuesThatHoldReferences) {
  const char* names[] = {"$[name]", "x$[name]$[name]", "$[id]", "$[id]$[id]"};
  const char* ids[] = {"", "$[name]$[name]", "$[name]"};
  for (const char* name : names) {
    for (const char* id : ids) {
      SCOPED_TRACE(QString("%1 %2").arg(name, id).toStdString());
      RefPtr<Placemark> feature(new Placemark(KmlId(id, "http://a"), QString()));
      feature->SetName(name);
      EXPECT_LE(feature->ApplyEntityReplacement("$[id] $[name]").size(), 1 << 10);
    }
  }
  const RefPtr<Placemark> large(new Placemark(KmlId("$[name]", "http://a"), QString()));
  large->SetName(QString(1500000, 'n'));
  EXPECT_EQ(3000002, large->ApplyEntityReplacement("<$[name]$[id]>").size());
}

TEST_F(FeatureTest, SharedStylesAreBoundByReference) {
  const RefPtr<Placemark> feature(new Placemark(KmlId("p", "http://a/doc.kml"), QString()));
  const RefPtr<Style> local(new Style(KmlId("s", "http://a/doc.kml"), QString()));
  const RefPtr<Style> remote(new Style(KmlId("r", "http://b/doc.kml"), QString()));
  FieldLog log(*feature);
  feature->SetReferencedStyleSelector(local.get());
  EXPECT_EQ("#s", feature->GetStyleUrl());
  EXPECT_TRUE(local->HasOwner(*feature));
  feature->OnUrlLoad(Fields().styleUrl, remote.get());
  EXPECT_EQ("http://b/doc.kml#r", feature->GetStyleUrl());
  EXPECT_FALSE(local->HasOwner(*feature));
  EXPECT_EQ("styleUrl styleUrl", log.take());
  feature->OnUrlLoad(Fields().styleUrl, nullptr);
  EXPECT_TRUE(feature->GetBit(kBitLoadFailed));

  feature->SetStyleUrl("#other");
  EXPECT_EQ(nullptr, feature->GetReferencedStyleSelector());
  EXPECT_FALSE(remote->HasOwner(*feature));
}

TEST_F(FeatureTest, ClientStates) {
  const auto feature = MakePlacemark("a");
  feature->SetName("\xc3\xa4", true);
  EXPECT_EQ(QString(QChar(0xe4)), feature->GetName());
  const int sequence[][2] = {{2, 2}, {7, 2}, {0, 0}, {1, 1}, {-1, 1}};
  for (const auto& step : sequence) {
    feature->SetProcessingMode(step[0]);
    EXPECT_EQ(step[1], feature->GetProcessingMode());
  }

  FieldLog log(*feature);
  feature->SetIsOpen(false);
  feature->SetStyleMode(0);
  feature->SetHiddenByLod(false);
  EXPECT_EQ("", log.take());
  feature->SetStyleMode(1);
  EXPECT_EQ("styleMode", log.take());

  feature->SetRemoteDescriptionUrl("u");
  feature->SetRemoteDescriptionText("t");
  feature->SetRemoteDescriptionUrl("u");
  EXPECT_EQ("t", feature->GetRemoteDescriptionText());
  feature->SetRemoteDescriptionUrl("v");
  EXPECT_EQ("", feature->GetRemoteDescriptionText()) << "another URL drops the text";

  const QString home("http://maps.vorrel.com/x");
  EXPECT_TRUE(RefPtr<Placemark>(new Placemark(KmlId("zUnique1", home), ""))->GetBit(kBitUnique));
  EXPECT_FALSE(RefPtr<Placemark>(new Placemark(KmlId("Unique1", home), ""))->GetBit(kBitUnique));
}

TEST_F(FeatureTest, AShapeWithTimesMakesThePlacemarkTimed) {
  const auto placemark = Placemark::CreatePlacemark();
  const RefPtr<Point> timed(new Point(KmlId(), QString()));
  timed->SetBit(kBitTrack, true);
  placemark->SetGeometry(timed.get());
  EXPECT_TRUE(placemark->IsTimedFeature());
  EXPECT_TRUE(placemark->GetBit(kBitTimedFeature));
  placemark->SetGeometry(RefPtr<Point>(new Point(KmlId(), QString())).get());
  EXPECT_FALSE(placemark->GetBit(kBitTimedFeature));
  placemark->SetTimePrimitive(MakeTime("2007").get());
  placemark->SetGeometry(nullptr);
  EXPECT_TRUE(placemark->GetBit(kBitTimedFeature));
}

TEST_F(FeatureTest, VisitsClimbToTheBasesUnlessToldNotTo) {
  class ClimbLog final : public FeatureVisitor {
  public:
    using FeatureVisitor::visit;
    void visit(AbstractFolder& folder) override {
      text_ += "F";
      FeatureVisitor::visit(folder);
    }
    void visit(AbstractFeature&) override { text_ += "*"; }
    bool ShouldVisitBaseClass(AbstractFeature&) override { return climbs_; }

    bool climbs_ = true;
    QString text_;
  };
  const KmlId none;
  const std::tuple<RefPtr<AbstractFeature>, const char*, const char*> cases[] = {
      {new Placemark(none, ""), "*", ""}, {new Folder(none, ""), "F*", ""},
      {new Document(none, ""), "F*", ""}, {new Channel(none, ""), "F*", ""},
      {new Globe(none, ""), "F*", "F"},   {new Planet(none, ""), "*", "*"},
      {new Window(none, ""), "*", "*"},
  };
  for (const auto& [feature, climbing, exact] : cases) {
    SCOPED_TRACE(feature->getType().toStdString());
    ClimbLog log;
    feature->accept(log);
    EXPECT_EQ(climbing, std::exchange(log.text_, QString()));
    log.climbs_ = false;
    feature->accept(log);
    EXPECT_EQ(exact, log.text_);
  }
}

} // namespace vorrel::kestan
