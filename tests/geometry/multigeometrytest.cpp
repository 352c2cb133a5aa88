#include "kestan/geometry/multigeometry.h"

#include "kestan/geometry/linestring.h"
#include "kestan/geometry/multilinestring.h"
#include "kestan/geometry/multipoint.h"
#include "tests/geometry/geometrytest.h"

namespace vorrel::kestan {

namespace {

RefPtr<Point> NewPoint(double longitude, double latitude) {
  return RefPtr<Point>(new Point(At(longitude, latitude), nullptr, KmlId(), ""));
}

Geometry* Child(const Geometry* geometry, int index) {
  return static_cast<const MultiGeometry*>(geometry)->GetGeometry(index);
}

} // namespace

using MultiGeometryTest = GeometryTest;

TEST_F(MultiGeometryTest, MembersOfAllKindsAreReadInOrderUnderEitherName) {
  const QString text =
      "<Placemark><%1><Polygon></Polygon><%1><LinearRing><coordinates>"
      "</coordinates></LinearRing></%1><Polygon id=\"p\"></Polygon></%1></Placemark>";
  for (const char* const name : {"MultiGeometry", "GeometryCollection"})
    EXPECT_TRUE(Squeezed(RoundTrip(text.arg(name))).contains(text.arg("MultiGeometry")));
  const auto placemark = Read<Placemark>(text.arg("MultiGeometry"));
  EXPECT_EQ(2, ById("p")->GetArrayIndex());
}

TEST_F(MultiGeometryTest, ANarrowCollectionWritesEachMemberOnceAndKeepsStrangers) {
  const auto multi = ReadShape<MultiPoint>("<MultiPoint><Point></Point><LineString id=\"stranger\">"
                                           "</LineString><Point></Point></MultiPoint>");
  EXPECT_EQ(2, multi->GetGeometryCount());
  const QString text = WriteShape(*multi);
  EXPECT_EQ(2, text.count("<Point>"));
  EXPECT_EQ(1, text.count("stranger"));

  const auto point = NewPoint(1, 1);
  EXPECT_TRUE(multi->AddGeometry(*point));
  EXPECT_TRUE(multi->RemGeometry(0));
  EXPECT_EQ(1, multi->FindGeometry(*point));
}

TEST_F(MultiGeometryTest, ALineCollectionInsertsOnlyLines) {
  const RefPtr<MultiLineString> multi(new MultiLineString(KmlId(), ""));
  const RefPtr<LineString> line(new LineString(KmlId(), ""));
  EXPECT_TRUE(multi->InsertGeometry(0, *line));
  EXPECT_FALSE(multi->InsertGeometry(0, *NewPoint(0, 0)));
  EXPECT_FALSE(multi->SetGeometry(0, *NewPoint(0, 0)));
  ASSERT_EQ(1, multi->GetGeometryCount());
  EXPECT_EQ(line.get(), multi->GetLineString(0));
}

TEST_F(MultiGeometryTest, TheFeatureReachesEveryLevel) {
  const auto placemark = Read<Placemark>(
      "<Placemark><name>P</name><MultiGeometry><MultiGeometry><Point></Point></MultiGeometry>"
      "</MultiGeometry></Placemark>");
  ASSERT_TRUE(placemark && placemark->GetGeometry());
  const RefPtr<Geometry> top(placemark->GetGeometry());
  const RefPtr<Geometry> inner(Child(top.get(), 0));
  Geometry* const point = Child(inner.get(), 0);
  EXPECT_EQ(placemark.get(), point->GetFeature());
  EXPECT_TRUE(point->GetBit(kBitInheritedVisibility));

  FieldLog log(*point);
  const auto other = Placemark::CreatePlacemark();
  other->SetGeometry(top.get());
  EXPECT_EQ(nullptr, placemark->GetGeometry());
  EXPECT_EQ(other.get(), point->GetFeature());
  EXPECT_TRUE(log.take().contains("feature"));
  other->SetVisibility(false);
  EXPECT_FALSE(point->GetBit(kBitInheritedVisibility));
  static_cast<MultiGeometry*>(top.get())->RemGeometry(*inner);
  EXPECT_EQ(nullptr, point->GetFeature());
  const RefPtr<Point> made(new Point(At(1, 2), placemark.get(), KmlId(), ""));
  EXPECT_EQ(placemark.get(), made->GetFeature());
  placemark->SetGeometry(made.get()); // which owns it already
  EXPECT_EQ(made.get(), placemark->GetGeometry());
}

TEST_F(MultiGeometryTest, ANameIsInheritedFromTheNearestThatHasOne) {
  const auto placemark = Read<Placemark>(
      "<Placemark xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><name>P</name><MultiGeometry>"
      "<MultiGeometry><gx:name>M</gx:name><Point></Point><Point><gx:name>own</gx:name></Point>"
      "</MultiGeometry><Point></Point></MultiGeometry></Placemark>");
  ASSERT_TRUE(placemark && placemark->GetGeometry());
  const Geometry* const top = placemark->GetGeometry();
  EXPECT_EQ("M", Child(Child(top, 0), 0)->GetInheritedName());
  EXPECT_EQ("own", Child(Child(top, 0), 1)->GetInheritedName());
  EXPECT_EQ("P", Child(top, 1)->GetInheritedName());
  EXPECT_TRUE(NewPoint(0, 0)->GetInheritedName().isNull());
}

TEST_F(MultiGeometryTest, AltitudesAreSharedOutInOrder) {
  const auto multi = ReadShape<MultiGeometry>(
      "<MultiGeometry><MultiGeometry><LineString><coordinates>0,0 1,1</coordinates></LineString>"
      "<Point></Point></MultiGeometry><Point></Point><Point></Point></MultiGeometry>");
  const double values[] = {1, 2, 3, 4};
  multi->SetAltitudes(values, 4);
  EXPECT_EQ((mmvector<double>{1, 2, 3, 4, 0}), Altitudes(*multi));
  multi->SetAltitudes(values, 0);
  multi->SetAltitude(5);
  EXPECT_EQ(mmvector<double>(5, 5.0), Altitudes(*multi));
}

TEST_F(MultiGeometryTest, FlagsAndModesReachEveryMember) {
  const auto multi = ReadShape<MultiGeometry>("<MultiGeometry><MultiGeometry><Point></Point>"
                                              "</MultiGeometry></MultiGeometry>");
  FieldLog log(*multi);
  multi->SetTessellate(true);
  multi->SetExtrude(true);
  multi->SetAltitudeMode(kAbsolute);
  const Geometry* const point = Child(Child(multi.get(), 0), 0);
  EXPECT_TRUE(point->GetTessellate() && point->GetExtrude());
  EXPECT_EQ(kAbsolute, point->GetAltitudeMode());
  QStringList notices = log.take().split(' ');
  notices.removeAll("bound"); // from below
  EXPECT_EQ((QStringList{"tessellate", "extrude", "altitudeMode"}), notices);
}

TEST_F(MultiGeometryTest, TheBoxFollowsItsMembers) {
  const RefPtr<MultiGeometry> outer(new MultiGeometry(KmlId(), ""));
  const RefPtr<MultiGeometry> inner(new MultiGeometry(KmlId(), ""));
  EXPECT_EQ("empty", Box(outer->GetBBox()));
  outer->AddGeometry(*inner);
  inner->AddGeometry(*NewPoint(170, 0));
  EXPECT_EQ("170 0 0 170 0 0", Box(outer->GetBBox()));
  const auto point = NewPoint(-170, 10);
  inner->AddGeometry(*point);
  EXPECT_EQ("170 0 0 190 10 0", Box(outer->GetBBox()));
  point->SetCoord(At(175, 5));
  EXPECT_EQ("170 0 0 175 5 0", Box(outer->GetBBox()));
}

TEST_F(MultiGeometryTest, ReversingTheOrderTellsOnce) {
  const RefPtr<MultiGeometry> multi(new MultiGeometry(KmlId(), ""));
  FieldLog log(*multi);
  multi->ReverseGeometryOrder();
  EXPECT_EQ("Geometry", log.take()) << "also without members";
  const auto a = NewPoint(1, 1), b = NewPoint(2, 2);
  multi->AddGeometry(*a);
  multi->AddGeometry(*b);
  multi->ReverseGeometryOrder();
  EXPECT_EQ(0, multi->FindGeometry(*b));
  EXPECT_EQ(a.get(), multi->GetGeometry(1));
}

TEST_F(MultiGeometryTest, ADeepNestHasTheFeatureAndTheBox) {
  const auto placemark =
      Read<Placemark>("<Placemark>" + QString("<MultiGeometry>").repeated(990) +
                      "<Point id='p'><coordinates>1,2,3</coordinates></Point>" +
                      QString("</MultiGeometry>").repeated(990) + "</Placemark>");
  ASSERT_TRUE(placemark);
  EXPECT_EQ(placemark.get(), ById<Point>("p")->GetFeature());
  EXPECT_EQ("1 2 3 1 2 3", Box(placemark->GetGeometry()->GetBBox()));
  ById<Point>("p")->SetCoord(At(4, 5, 6));
  EXPECT_EQ("4 5 6 4 5 6", Box(placemark->GetGeometry()->GetBBox()));
}

} // namespace vorrel::kestan
