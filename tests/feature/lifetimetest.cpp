// What an observer may do in the middle of an operation: anything, to any object.

#include "kestan/core/childfield.h"
#include "kestan/core/schema.h"
#include "kestan/core/watcher.h"
#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/geometry/linearring.h"
#include "kestan/geometry/linestring.h"
#include "kestan/geometry/multigeometry.h"
#include "kestan/geometry/polygon.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/stylemappair.h"
#include "tests/support/kmltest.h"
#include "tests/support/observers.h"

#include <QRegularExpression>

#include <malloc.h>

#include <functional>
#include <iterator>
#include <memory>
#include <utility>

namespace vorrel::kestan {

namespace {

const char kTree[] =
    "<Document id='doc'><Style id='s'><LineStyle><width>2</width></LineStyle></Style>"
    "<StyleMap id='m'><Pair id='pair'><key>normal</key><styleUrl>#s</styleUrl></Pair></StyleMap>"
    "<Folder id='f'><Placemark id='p'><Snippet>x</Snippet><styleUrl>#s</styleUrl><TimeStamp "
    "id='t'/>"
    "<Polygon id='area'><outerBoundaryIs><LinearRing id='outer'><coordinates>0,0 0,1 1,1 0,0"
    "</coordinates></LinearRing></outerBoundaryIs><innerBoundaryIs><LinearRing id='inner'/>"
    "</innerBoundaryIs></Polygon></Placemark><Placemark id='q'><MultiGeometry id='shapes'>"
    "<Point id='dot'/><LineString id='line'><coordinates>1,2,3 4,5,6</coordinates></LineString>"
    "</MultiGeometry></Placemark></Folder><Folder id='g'><Placemark id='r'/></Folder></Document>";

/// Does something once, at the first notice.
class Once final : public ObjectObserver {
public:
  Once(SchemaObject* object, std::function<void()> deed)
      : ObjectObserver(object), deed_(std::move(deed)) {}
  void OnFieldChanged(const FieldChangedEvent&) override { Do(); }
  void OnSubFieldChanged(const SubFieldChangedEvent&) override { Do(); }
  void OnPreDelete(const PreDeleteEvent&) override { Do(); }

private:
  void Do() {
    if (const auto deed = std::exchange(deed_, nullptr))
      deed();
  }
  std::function<void()> deed_;
};

/// What has gone is filled with rubbish, so that a look at it shows.
class LifetimeTest : public KmlTest {
protected:
  LifetimeTest() { mallopt(M_PERTURB, 0x5A); }
  ~LifetimeTest() override { mallopt(M_PERTURB, 0); }
};

} // namespace

TEST_F(LifetimeTest, NoOperationTouchesWhatItsNoticeHasEnded) {
  const std::function<void()> operations[] = {
      [&] { ById<LineString>("line")->SetCoordCount(5); },
      [&] { ById<LineString>("line")->SetTessellate(true); },
      [&] { ById<LineString>("outer")->AddCoord(-1, Vec3<double>(0.1, 0.1, 0.0)); },
      [&] { ById<MultiGeometry>("shapes")->SetExtrude(true); },
      [&] { ById<MultiGeometry>("shapes")->SetAltitudeMode(kAbsolute); },
      [&] { ById<MultiGeometry>("shapes")->SetAltitude(3.0); },
      [&] { ById<Polygon>("area")->SetAltitude(3.0); },
      [&] { ById<Polygon>("area")->MakeCounterClockwise(); },
      [&] { ById<Placemark>("p")->SetGeometry(ById<MultiGeometry>("shapes")); },
      [&] { ById<Placemark>("r")->SetGeometry(ById<Polygon>("area")); },
      [&] { ById<Placemark>("p")->SetSnippetIfExists(QStringLiteral("y")); },
      [&] { ById<Placemark>("p")->InlineStyle(); },
      [&] {
        ById<Document>("doc")->AddStyleSelector(*RefPtr<Style>(new Style(KmlId(), QString())));
      },
      [&] { ById<Placemark>("r")->InlineStyle(); },
      [&] { ById<Placemark>("p")->SetStyleUrl(QString()); },
      [&] { ById<Placemark>("r")->SetStyleUrl(QStringLiteral("#s")); },
      [&] { ById<Placemark>("p")->SetParent(ById<Folder>("g")); },
      [&] { ById<Folder>("f")->SetVisibility(false); },
      [&] { ById<Folder>("f")->InsertChild(0, *ById<Placemark>("r")); },
      [&] { AbstractFolder::MoveAllChildren(ById<Folder>("f"), ById<Folder>("g")); },
      [&] { ById<Folder>("f")->copy(*ById<Folder>("g"), false, nullptr); },
      [&] { ById<Placemark>("r")->copy(*ById<Placemark>("p"), true, nullptr); },
      [&] { ById<StyleMap::Pair>("pair")->SetStyleUrl(QString()); },
      [&] { ById<StyleMap::Pair>("pair")->SetStyleUrl(QStringLiteral("#m")); },
      [&] { ById<Style>("s")->GetIconStyle()->SetIcon(nullptr); },
      [&] { ById<Style>("s")->fromString(QString()); },
      [&] {
        ById<Style>("s")
            ->FindField(QStringLiteral("geomColor"), Namespace::kKml, nullptr)
            ->fromString(*ById<Style>("s"), nullptr, nullptr, QStringLiteral("ff00ff00"), -1,
                         nullptr);
      },
  };
  const char* const watched[] = {"s", "m",     "pair", "f",    "g",    "p",      "q",  "r",
                                 "t", "outer", "dot",  "area", "line", "shapes", "doc"};
  for (std::size_t operation = 0; operation < std::size(operations); ++operation) {
    for (const char* id : watched) {
      for (int drop = 0; drop < 3; ++drop) {
        SCOPED_TRACE(testing::Message() << operation << ' ' << id << ' ' << drop);
        auto root = Read<Document>(kTree);
        root->SetBit(kBitInheritedNotifySubField, true);
        mmvector<SchemaObject*> all;
        root->FindBySchema(SchemaObject::GetClassSchema(), all);
        for (SchemaObject* object : all)
          object->SetBit(kBitNotifySubField, true);
        const Once observer(ById(id), [&] {
          if (drop == 0)
            root.reset();
          SchemaObject* const object = root ? ById(id) : nullptr;
          SchemaObject* const owner = object ? object->GetHome() : nullptr;
          if (owner && drop == 1)
            owner->stolen(*object);
          else if (SchemaObject* above = owner ? owner->GetHome() : nullptr)
            above->stolen(*owner);
        });
        operations[operation]();
      }
    }
  }
}

TEST_F(LifetimeTest, AWatcherHearsOfTheEndAtAnyDepth) {
  auto placemark = Read<Placemark>("<Placemark id='p'/>");
  Watcher<Placemark> watcher(placemark.get());
  Watcher<Placemark> disabled(placemark.get());
  disabled.SetEnabled(false);
  int depth = 0;
  class Nested final : public ObjectObserver {
  public:
    Nested(Placemark* object, std::function<void()> deed)
        : ObjectObserver(object), deed_(std::move(deed)) {}
    void OnFieldChanged(const FieldChangedEvent&) override { deed_(); }
    void OnPreDelete(const PreDeleteEvent& event) override {
      late.set(static_cast<Placemark*>(&event.object));
    }
    Watcher<Placemark> late;

  private:
    std::function<void()> deed_;
  };
  Nested nested(placemark.get(), [&] {
    if (++depth == 4)
      placemark.reset();
    else
      placemark->SetName(QString::number(depth));
  });
  placemark->SetName(QStringLiteral("x"));
  EXPECT_EQ(4, depth);
  EXPECT_EQ(nullptr, watcher.get());
  EXPECT_EQ(nullptr, disabled.get());
  EXPECT_EQ(nullptr, nested.late.get()) << "what dies isn't watched any more";
}

TEST_F(LifetimeTest, WhatDiesIsNeitherFoundNorBoundNorOwned) {
  const auto home = Read<Folder>("<Folder id='home'/>");
  auto placemark = Read<Placemark>("<Placemark id='p'><styleUrl>#s</styleUrl><Style id='own'/>"
                                   "</Placemark>");
  RefPtr<Style> awaited;
  SchemaObject* found = placemark.get();
  bool isTaken = true;
  const Once observer(placemark->GetInlineStyleSelector(), [&] {
    found = ById("own");
    awaited = new Style(KmlId(QStringLiteral("s"), GetDocumentUrl()), GetDocumentUrl());
  });
  SchemaObject* const raw = placemark.get();
  const Once last(raw, [&] { isTaken = home->AddChild(static_cast<Placemark&>(*raw)); });
  placemark.reset();
  EXPECT_EQ(nullptr, found);
  ASSERT_TRUE(awaited);
  EXPECT_EQ(0, awaited->GetOwnerCount()) << "the reference went with its placemark";
  EXPECT_FALSE(isTaken);
  EXPECT_EQ(0, home->GetChildCount());

  // A pair that was made without a notice waits as well.
  RefPtr<StyleMap::Pair> pair(
      new StyleMap::Pair(KmlId(QString(), GetDocumentUrl()), GetDocumentUrl(), false));
  pair->SetStyleUrl(QStringLiteral("#late"));
  pair.reset();
  const RefPtr<Style> late(
      new Style(KmlId(QStringLiteral("late"), GetDocumentUrl()), GetDocumentUrl()));
  EXPECT_EQ(0, late->GetOwnerCount());
}

TEST_F(LifetimeTest, WhatIsRescuedFromADeepEndLivesOn) {
  QString text;
  constexpr int kLevels = 80;
  for (int i = 0; i < kLevels; ++i)
    text += QStringLiteral("<Folder id='n%1'>").arg(i);
  text += QStringLiteral("<Placemark id='leaf'><Point id='dot'/></Placemark>") +
          QStringLiteral("</Folder>").repeated(kLevels);
  auto root = Read<Folder>(text);
  RefPtr<SchemaObject> kept;
  Watcher<Folder> deep(ById<Folder>("n60"));
  const Once observer(ById<Folder>("n50"), [&] { kept = ById("leaf"); });
  root.reset();
  EXPECT_EQ(nullptr, deep.get());
  ASSERT_TRUE(kept);
  EXPECT_EQ(1, kept->GetRefCount());
  EXPECT_EQ(nullptr, kept->GetHome());
  EXPECT_EQ(kept.get(), ById<Point>("dot")->GetFeature());
}

TEST_F(LifetimeTest, AListMayBeChangedWhileItIsCopied) {
  const auto source = Read<LineString>("<LineString><coordinates>1,2,3 4,5,6 7,8,9</coordinates>"
                                       "</LineString>");
  const auto line = Read<LineString>("<LineString/>");
  const Vec3<double> one(0.0, 0.0, 0.0);
  const OnChange observer(line.get(), [&](const Field& field) {
    if (field.GetName() == QLatin1String("coordinates") && line->GetCoordCount() > 1)
      line->SetCoords(&one, 1);
  });
  line->copy(*source, true, nullptr);
  EXPECT_EQ(1, line->GetCoordCount()) << "the last word";
}

TEST_F(LifetimeTest, AChildStandsInOnePlace) {
  const auto document = Read<Document>(kTree);
  Polygon& area = *ById<Polygon>("area");
  LinearRing* const outer = area.GetOuterBoundary();
  EXPECT_TRUE(area.AddInnerBoundary(outer));
  EXPECT_EQ(nullptr, area.GetOuterBoundary());
  EXPECT_TRUE(outer->IsInner());
  area.SetOuterBoundary(outer);
  EXPECT_TRUE(outer->IsOuter());
  EXPECT_EQ(-1, outer->GetArrayIndex());
  EXPECT_EQ(1U, area.GetInnerBoundaries().size());

  // A shape that's made for a feature is the feature's.
  RefPtr<Placemark> placemark = Placemark::CreatePlacemark();
  const RefPtr<Point> point(new Point({0.1, 0.2, 0.0}, placemark.get(), KmlId(), QString()));
  EXPECT_EQ(point.get(), placemark->GetGeometry());
  const RefPtr<Point> second(new Point({0.1, 0.2, 0.0}, placemark.get(), KmlId(), QString()));
  EXPECT_EQ(nullptr, second->GetFeature()) << "it has one already";
  placemark.reset();
  EXPECT_EQ(nullptr, point->GetFeature());
  point->SetCoord({0.3, 0.3, 0.0});

  // A folder moves to one below it what may go there.
  const auto above = Read<Folder>("<Folder><Placemark/><Folder id='below'/><Placemark/></Folder>");
  AbstractFolder::MoveAllChildren(above.get(), ById<Folder>("below"));
  EXPECT_EQ(1, above->GetChildCount());
  EXPECT_EQ(2, ById<Folder>("below")->GetChildCount());
}

TEST_F(LifetimeTest, ObjectsOfOtherClassesShareTheFieldsOfTheirBase) {
  const QString placemark("<Placemark><name>%1</name>%2</Placemark>");
  const auto withPoint =
      Read<Placemark>(placemark.arg("a", "<Point><coordinates>1,2,3</coordinates></Point>"));
  const auto withLine = Read<Placemark>(
      placemark.arg("b", "<LineString><coordinates>4,5,6 7,8,9</coordinates></LineString>"));
  const QString point = Element(Write(*withPoint), "Point");
  withLine->merge(*withPoint, *withPoint);
  EXPECT_EQ(point, Element(Write(*withLine), "Point"));
  const auto folder = Read<Folder>("<Folder><Placemark/></Folder>");
  folder->copy(*withPoint, true, nullptr);
  EXPECT_EQ("a", folder->GetName());
  EXPECT_EQ(1, folder->GetChildCount());
  const auto line = Read<LineString>("<LineString><extrude>1</extrude></LineString>");
  line->copy(*withPoint->GetGeometry(), true, nullptr);
  EXPECT_FALSE(line->GetExtrude());

  auto outer = Read<Folder>("<Folder><Folder id='in'><Placemark/><Placemark/></Folder></Folder>");
  outer->copy(*ById<Folder>("in"), false, nullptr);
  EXPECT_EQ(2, outer->GetChildCount()) << "the folder in between is dissolved";
}

TEST_F(LifetimeTest, ADeepCloneRefersToItsOwnStyles) {
  const auto document = Read<Document>(
      "<Document><Style id='s'><LineStyle><width>2</width></LineStyle></Style>"
      "<StyleMap id='m'><Pair><key>normal</key><styleUrl>#s</styleUrl></Pair></StyleMap>"
      "<Placemark><styleUrl>#s</styleUrl></Placemark><Placemark><styleUrl>#m</styleUrl></Placemark>"
      "<Placemark><styleUrl>far.kml#s</styleUrl></Placemark></Document>");
  const auto copy = RefPtrCast<Document>(document->clone(true, nullptr));
  ASSERT_EQ(2, copy->GetStyleSelectorCount());
  EXPECT_EQ(copy->GetStyleSelector(0), copy->GetChild(0)->GetReferencedStyleSelector());
  EXPECT_EQ(copy->GetStyleSelector(1), copy->GetChild(1)->GetReferencedStyleSelector());
  EXPECT_EQ("http://example.com/dir/far.kml#s", copy->GetChild(2)->GetStyleUrl());
  const QString text = Write(*copy);
  EXPECT_EQ(2, text.count(QRegularExpression("<Style(Map)? id="))) << "no style came twice";
  EXPECT_EQ(text, Write(*ReadObject(text)));
}

} // namespace vorrel::kestan
