#include "kestan/feature/abstractfeaturecontainer.h"
#include "kestan/feature/geometrycontainer.h"
#include "kestan/feature/linearringcontainer.h"
#include "kestan/feature/schemaobjectlist.h"
#include "kestan/feature/styleselectorcontainer.h"
#include "kestan/geometry/linearring.h"
#include "kestan/geometry/multigeometry.h"
#include "kestan/geometry/polygon.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

using ContainerTest = KmlTest;

namespace {

/// The ids of the elements in order.
QString Ids(const SchemaObjectContainer& container) {
  QString ids;
  const auto list = container.GetObjectList();
  EXPECT_EQ(container.length(), list->GetLength());
  for (int i = 0; i < list->GetLength(); ++i)
    ids += list->GetObject(i)->GetId();
  return ids;
}

/// A kind of container with a parent and elements that it takes.
struct Kind {
  RefPtr<SchemaObjectContainer> container;
  RefPtr<SchemaObject> parent;
  RefPtr<SchemaObject> (*make)(const QString& id);
};

KmlId Local(const QString& id) { return KmlId(id, "file:///x.kml"); }

template <class T> RefPtr<SchemaObject> Make(const QString& id) {
  return RefPtr<SchemaObject>(new T(Local(id), QString()));
}

mmvector<Kind> Kinds() {
  return {
      {new AbstractFeatureContainer(KmlId(), ""), Make<Folder>(""), Make<Placemark>},
      {new StyleSelectorContainer(KmlId(), ""), Make<Document>(""), Make<Style>},
      {new GeometryContainer(KmlId(), ""), Make<MultiGeometry>(""), Make<Point>},
      {new LinearRingContainer(KmlId(), ""), Make<Polygon>(""), Make<LinearRing>},
  };
}

} // namespace

TEST_F(ContainerTest, ListsAreEditedAlikeWhateverTheirClass) {
  for (const Kind& kind : Kinds()) {
    SchemaObjectContainer& container = *kind.container;
    SCOPED_TRACE(container.getType().toStdString());
    const RefPtr<SchemaObject> a = kind.make("a");
    const RefPtr<SchemaObject> b = kind.make("b");
    const RefPtr<SchemaObject> c = kind.make("c");
    EXPECT_FALSE(container.append(a.get())) << "no list yet";
    const RefPtr<SchemaObject> stranger = Make<SchemaObjectList>("x");
    EXPECT_FALSE(container.SetContainer(stranger.get()));
    EXPECT_FALSE(container.SetContainer(nullptr));
    EXPECT_TRUE(container.SetContainer(kind.parent.get()));
    EXPECT_FALSE(container.append(stranger.get()) || container.append(nullptr) ||
                 container.insert(0, stranger.get()) ||
                 container.InsertBefore(a.get(), stranger.get()));
    EXPECT_EQ(-1, container.find(stranger.get()));
    for (const RefPtr<SchemaObject>& added : {a, b, a})
      EXPECT_TRUE(container.append(added.get()));
    EXPECT_EQ("ba", Ids(container));
    EXPECT_TRUE(container.InsertBefore(c.get(), a.get()));
    EXPECT_TRUE(container.InsertBefore(a.get(), b.get()));
    EXPECT_EQ("abc", Ids(container));
    EXPECT_TRUE(container.InsertBefore(a.get(), a.get()));
    EXPECT_TRUE(container.InsertBefore(a.get(), nullptr));
    EXPECT_EQ("bca", Ids(container));

    RefPtr<SchemaObject> end;
    EXPECT_TRUE(container.first(end) && end == b);
    EXPECT_TRUE(container.last(end) && end == a);

    EXPECT_TRUE(container.replace(a.get(), b.get())) << "one that is in the list already";
    EXPECT_EQ("ac", Ids(container));
    EXPECT_TRUE(container.replace(b.get(), c.get()));
    EXPECT_EQ("ab", Ids(container));
    EXPECT_FALSE(container.replace(c.get(), c.get()));
    EXPECT_FALSE(container.remove(stranger.get()));
    EXPECT_TRUE(container.remove(a.get()) && container.remove(b.get()));
    EXPECT_TRUE(container.first(end) && !end);
  }
}

TEST_F(ContainerTest, AnObjectListCountsReferencesOnly) {
  const RefPtr<SchemaObjectList> list(new SchemaObjectList(KmlId(), QString()));
  const auto a = Make<Placemark>("a");
  const auto b = Make<Placemark>("b");
  EXPECT_TRUE(list->AddObject(*a));
  EXPECT_TRUE(list->AddObject(*a));
  EXPECT_TRUE(list->InsertObject(1, *b));
  EXPECT_FALSE(list->InsertObject(0, *list));
  EXPECT_TRUE(list->InsertObject(9, *b));
  EXPECT_EQ(4, list->GetLength());
  EXPECT_EQ(0, a->GetOwnerCount());
  EXPECT_TRUE(list->RemObject(*a));
  EXPECT_EQ(1, list->FindObject(*a));
  EXPECT_FALSE(list->RemObject(3));
  EXPECT_TRUE(list->RemObject(1));
  EXPECT_FALSE(list->RemObject(*a));
  EXPECT_EQ(2, list->GetLength());
}

} // namespace vorrel::kestan
