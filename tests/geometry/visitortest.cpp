#include "kestan/geometry/dioramaobject.h"
#include "kestan/geometry/geometrycounter.h"
#include "kestan/geometry/geometryvisitor.h"
#include "kestan/geometry/linearring.h"
#include "kestan/geometry/multilinestring.h"
#include "kestan/geometry/multipoint.h"
#include "kestan/geometry/multipolygon.h"
#include "kestan/geometry/polygon.h"
#include "tests/geometry/geometrytest.h"

namespace vorrel::kestan {

namespace {

/// Notes the classes that reach the common base, and those that it has an own visit for.
class Notes final : public GeometryVisitor, public GeometryVisitorConst {
public:
  using GeometryVisitor::visit;
  using GeometryVisitorConst::visit;
  void visit(Geometry& geometry) override { text += geometry.getType() + ' '; }
  void visit(const Geometry& geometry) override { text += "const " + geometry.getType() + ' '; }
  void visit(LineString&) override { text += "own "; }
  bool ShouldVisitBaseClass(Geometry&) override { return climbs; }
  bool ShouldVisitBaseClass(const Geometry&) override { return climbs; }

  QString text;
  bool climbs = true;
};

template <class T> QString Visit(Notes& notes) {
  notes.text.clear();
  const RefPtr<T> object(new T(KmlId(), ""));
  object->accept(static_cast<GeometryVisitor&>(notes));
  static_cast<const T&>(*object).accept(static_cast<GeometryVisitorConst&>(notes));
  return notes.text.trimmed();
}

} // namespace

using GeometryVisitorTest = GeometryTest;

TEST_F(GeometryVisitorTest, EachClassGoesStraightToTheCommonBase) {
  Notes notes;
  EXPECT_EQ("Point const Point", Visit<Point>(notes));
  EXPECT_EQ("own const LineString", Visit<LineString>(notes));
  EXPECT_EQ("LinearRing const LinearRing", Visit<LinearRing>(notes)) << "not visited as a line";
  EXPECT_EQ("Polygon const Polygon", Visit<Polygon>(notes));
  EXPECT_EQ("MultiGeometry const MultiGeometry", Visit<MultiGeometry>(notes));
  EXPECT_EQ("MultiPoint const MultiPoint", Visit<MultiPoint>(notes));
  EXPECT_EQ("MultiLineString const MultiLineString", Visit<MultiLineString>(notes));
  EXPECT_EQ("MultiPolygon const MultiPolygon", Visit<MultiPolygon>(notes));
  EXPECT_EQ("DioramaObject const DioramaObject", Visit<DioramaObject>(notes));
  notes.climbs = false;
  EXPECT_EQ("", Visit<Point>(notes));
  EXPECT_EQ("own", Visit<LineString>(notes));
}

TEST_F(GeometryVisitorTest, TheCounterSumsUpWhatLiesBelowAFeature) {
  const auto folder = ReadObject(QByteArray(
      "<Folder><Folder><Placemark><MultiGeometry>"
      "<Point><coordinates>1,2,3</coordinates></Point>"
      "<Point><extrude>1</extrude><altitudeMode>absolute</altitudeMode>"
      "<coordinates>5,6,7</coordinates></Point>"
      "<LineString><extrude>1</extrude><coordinates>1,1,9 2,2,9</coordinates></LineString>"
      "</MultiGeometry></Placemark></Folder><Placemark></Placemark>"
      "<Placemark><Polygon><outerBoundaryIs><LinearRing><coordinates>0,0 1,0 1,1 0,0</coordinates>"
      "</LinearRing></outerBoundaryIs></Polygon></Placemark></Folder>"));
  ASSERT_TRUE(folder);
  GeometryCounter counter;
  counter.CountGeometry(static_cast<const AbstractFeature&>(*folder));
  EXPECT_EQ(2, counter.GetCount(GeometryCounter::kPoint));
  EXPECT_EQ(1, counter.GetExtrudedCount(GeometryCounter::kPoint));
  EXPECT_EQ(1, counter.GetCount(GeometryCounter::kLine));
  EXPECT_EQ(0, counter.GetExtrudedCount(GeometryCounter::kLine)) << "extruded, but on the ground";
  EXPECT_EQ(1, counter.GetCount(GeometryCounter::kPolygon));
  EXPECT_EQ(0, counter.GetCount(GeometryCounter::kTrack));
  EXPECT_EQ(GeometryCounter::kMixed, counter.GetCommonExtrude());
  EXPECT_EQ("0 0 0 5 6 7", Box(counter.GetBounds()));

  Notes notes;
  static_cast<AbstractFeature&>(*folder).Accept(static_cast<GeometryVisitor*>(&notes));
  static_cast<const AbstractFeature&>(*folder).Accept(static_cast<GeometryVisitorConst*>(&notes));
  EXPECT_EQ("MultiGeometry Polygon const MultiGeometry const Polygon ", notes.text);
}

TEST_F(GeometryVisitorTest, TheCounterKnowsWhatAllHaveInCommon) {
  const RefPtr<Polygon> first(new Polygon(KmlId(), ""));
  const RefPtr<Polygon> second(new Polygon(KmlId(), ""));
  GeometryCounter counter;
  counter.CountGeometry(static_cast<const Geometry*>(nullptr));
  EXPECT_EQ(GeometryCounter::kNothingSeen, counter.GetCommonExtrude());
  EXPECT_EQ(GeometryCounter::kNothingSeen, counter.GetCommonAltitudeMode());
  EXPECT_TRUE(counter.GetBounds().IsEmpty());

  first->SetAltitudeMode(kAbsolute);
  counter.CountGeometry(first.get());
  EXPECT_EQ(0, counter.GetCommonExtrude());
  EXPECT_EQ(kAbsolute, counter.GetCommonAltitudeMode());
  counter.CountGeometry(second.get());
  EXPECT_EQ(0, counter.GetCommonExtrude());
  EXPECT_EQ(GeometryCounter::kMixed, counter.GetCommonAltitudeMode());
  counter.CountGeometry(first.get());
  EXPECT_EQ(GeometryCounter::kMixed, counter.GetCommonAltitudeMode());
}

TEST_F(GeometryVisitorTest, ADioramaHasNoFormInADocument) {
  const auto placemark = Placemark::CreatePlacemark();
  const RefPtr<DioramaObject> diorama(new DioramaObject(KmlId(), ""));
  EXPECT_EQ(0U, diorama->GetAccess());
  diorama->SetBBox({At(1, 2, 3), At(4, 5, 6)});
  placemark->SetGeometry(diorama.get());
  EXPECT_EQ("1 2 3 4 5 6", Box(diorama->GetBBox()));
  EXPECT_FALSE(Write(*placemark).contains("Diorama"));

  const char* const kept = "<Placemark><DioramaObject><name>x</name></DioramaObject></Placemark>";
  EXPECT_TRUE(Write(*Read<Placemark>(kept)).contains("<DioramaObject>"));
}

} // namespace vorrel::kestan
