#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/feature/visibilityobserver.h"
#include "kestan/style/style.h"
#include "tests/feature/faketime.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

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

class VisibilityLog final : public AbstractFeature::VisibilityObserver {
public:
  void OnVisibilityChanged(const Event& event) override { names_ += event.feature.GetName(); }
  QString take() { return std::exchange(names_, QString()); }

private:
  QString names_;
};

/// Empties and drops a folder as soon as a feature in it changes.
class Remover final : public ObjectObserver {
public:
  Remover(AbstractFeature& watched, RefPtr<Folder>& folder)
      : ObjectObserver(watched), folder_(folder) {}
  void OnFieldChanged(const FieldChangedEvent&) override {
    if (done_)
      return;
    done_ = true;
    while (folder_->GetChildCount() > 0)
      folder_->RemChild(0);
    folder_.reset();
  }
  void OnPreDelete(const PreDeleteEvent&) override { SetObserved(nullptr); }

private:
  RefPtr<Folder>& folder_;
  bool done_ = false;
};

} // namespace

TEST_F(FeatureTest, PlainFieldsComeBackInTheirOrderExceptDefaultsAndOpacity) {
  const QString kml =
      "<Placemark xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">"
      "<gx:balloonVisibility>%2</gx:balloonVisibility><styleUrl>#s</styleUrl>"
      "<description>d</description><open>%2</open><visibility>%1</visibility>"
      "<phoneNumber>p</phoneNumber><address>a</address><name>n</name><opacity>0.5</opacity>"
      "</Placemark>";
  const auto feature = Read<Placemark>(kml.arg(0).arg(1));
  ASSERT_TRUE(feature);
  EXPECT_EQ(0.5F, feature->GetOpacity());
  const QString text = Write(*feature).remove('\n').remove('\t');
  EXPECT_TRUE(text.contains("<Placemark><name>n</name><visibility>0</visibility><open>1</open>"
                            "<address>a</address><phoneNumber>p</phoneNumber>"
                            "<description>d</description><styleUrl>#s</styleUrl>"
                            "<gx:balloonVisibility>1</gx:balloonVisibility></Placemark>"))
      << text.toStdString();
  const QString defaults = Write(*Read<Placemark>(kml.arg(1).arg(0)));
  for (const char* name : {"visibility", "open", "gx:balloonVisibility", "opacity"})
    EXPECT_EQ("", Element(defaults, name)) << name;
}

TEST_F(FeatureTest, ChildrenOfAllKindsAreKept) {
  const QString kept[] = {
      "<LookAt><longitude>1</longitude></LookAt>",
      "<TimeStamp><when>2007</when></TimeStamp>",
      "<Style><LineStyle><width>2</width></LineStyle></Style>",
      "<Region><Lod><minLodPixels>8</minLodPixels></Lod></Region>",
      "<ExtendedData><Data name=\"a\"><value>1</value></Data></ExtendedData>",
      "<StyleSelector><x>1</x></StyleSelector>",
  };
  for (const QString& content : kept) {
    SCOPED_TRACE(content.toStdString());
    const auto feature = Read<Placemark>("<Placemark><name>n</name>" + content + "</Placemark>");
    ASSERT_TRUE(feature);
    EXPECT_TRUE(Write(*feature).remove('\n').remove('\t').contains(content));
  }
}

TEST_F(FeatureTest, SettersTellOfChangesOnly) {
  const auto feature = MakePlacemark("a");
  FieldLog log(*feature);
  feature->SetName("a");
  feature->SetIsOpen(false);
  feature->SetVisibility(true);
  feature->SetStyleMode(0);
  feature->SetHiddenByLod(false);
  EXPECT_EQ("", log.take());
  feature->SetName("\xc3\xa4", true);
  EXPECT_EQ(QString(QChar(0xe4)), feature->GetName());
  feature->SetIsOpen(true);
  feature->SetStyleMode(1);
  feature->SetStyleUrl("#x");
  EXPECT_EQ("name open styleMode styleUrl", log.take());
  feature->SetHiddenByLod(true);
  EXPECT_FALSE(feature->isVisible());
  EXPECT_TRUE(feature->GetVisibility());
  EXPECT_NE("", log.take());
}

TEST_F(FeatureTest, HidingAFolderHidesWhatIsBelowAndKeepsItsWishes) {
  const auto folder = Read<Folder>("<Folder><Folder><Placemark><name>a</name></Placemark>"
                                   "<Placemark><visibility>0</visibility></Placemark></Folder>"
                                   "</Folder>");
  ASSERT_TRUE(folder);
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

  folder->SetVisibility(false);
  inner->SetParent(nullptr);
  EXPECT_TRUE(inner->isVisible()) << "without a folder only its own wish counts";
}

TEST_F(FeatureTest, ForceVisibleOverridesAndTellsTheObserversAlways) {
  const auto feature = MakePlacemark("a");
  VisibilityLog visibility;
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

TEST_F(FeatureTest, OpacityMultipliesDownTheTree) {
  const auto folder =
      Read<Folder>("<Folder><opacity>0.5</opacity><Folder><opacity>0.5</opacity><Placemark/>"
                   "</Folder></Folder>");
  ASSERT_TRUE(folder);
  const RefPtr<Folder> inner(static_cast<Folder*>(folder->GetChild(0)));
  float opacity = 0;
  inner->GetChild(0)->isVisible(&opacity);
  EXPECT_EQ(0.25F, opacity);
  inner->SetParent(nullptr);
  inner->isVisible(&opacity);
  EXPECT_EQ(0.5F, opacity);
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
  const RefPtr<FakeTime> outer(new FakeTime("2007", false));
  const RefPtr<FakeTime> own(new FakeTime("2008"));
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

TEST_F(FeatureTest, AnObserverMayTakeTheTreeApart) {
  auto folder = MakeFolder("f");
  for (int i = 0; i < 3; ++i)
    folder->AddChild(*MakePlacemark(QString::number(i)));
  Remover remover(*folder->GetChild(0), folder);
  folder->SetVisibility(false);
  EXPECT_FALSE(folder);
}

TEST_F(FeatureTest, SiblingsAndAncestors) {
  const auto top = Read<Folder>("<Folder><Folder><Placemark/><Placemark/></Folder></Folder>");
  const auto* folder = static_cast<Folder*>(top->GetChild(0));
  const AbstractFeature* a = folder->GetChild(0);
  const AbstractFeature* b = folder->GetChild(1);
  EXPECT_EQ(nullptr, top->GetNextSiblingNode());
  EXPECT_EQ(b, a->GetNextSiblingNode());
  EXPECT_EQ(a, b->GetPreviousSiblingNode());
  EXPECT_EQ(nullptr, a->GetPreviousSiblingNode());
  EXPECT_EQ(nullptr, b->GetNextSiblingNode());
  EXPECT_TRUE(a->IsDescendantOf(*top));
  EXPECT_FALSE(top->IsDescendantOf(*top));
  EXPECT_TRUE(top->IsSelfOrDescendantOf(*top));
  EXPECT_FALSE(top->IsSelfOrDescendantOf(*folder));
}

TEST_F(FeatureTest, EntityReplacement) {
  struct Case {
    const char* text;
    const char* expected;
  };
  const Case cases[] = {
      {"", ""},
      {"plain $[", "plain $["},
      {"$[name]!", "N!"},
      {"$[name] $[id] $[name]", "N i N"},
      {"$[other] $[name]", "$[other] $[name]"},
      {"$[name] $[other] $[id]", "N $[other] $[id]"},
      {"$[a $[name]", "$[a $[name]"},
      {"] $[name]", "] N"},
      {"$[]", "$[]"},
  };
  const auto feature = Read<Placemark>("<Placemark id=\"i\"><name>N</name></Placemark>");
  ASSERT_TRUE(feature);
  for (const Case& c : cases)
    EXPECT_EQ(c.expected, feature->ApplyEntityReplacement(c.text)) << c.text;
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
  const int sequence[][2] = {{1, 1}, {2, 2}, {0, 0}, {7, 0}, {1, 1}, {-1, 1}};
  for (const auto& step : sequence) {
    feature->SetProcessingMode(step[0]);
    EXPECT_EQ(step[1], feature->GetProcessingMode());
  }

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

} // namespace vorrel::kestan
