#include "kestan/feature/abstractfeaturecontainer.h"
#include "kestan/feature/channel.h"
#include "kestan/feature/database.h"
#include "kestan/feature/databaseschema.h"
#include "kestan/feature/globe.h"
#include "kestan/feature/linearringcontainer.h"
#include "kestan/feature/planet.h"
#include "kestan/feature/schemaobjectlist.h"
#include "kestan/geometry/multilinestring.h"
#include "kestan/geometry/polygon.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

#include <stdexcept>

namespace vorrel::kestan {

using FolderTest = KmlTest;

namespace {

/// The names of the children in order; checks that each child knows its place and owner.
QString Names(const AbstractFolder& folder) {
  QString names;
  for (int i = 0; i < folder.GetChildCount(); ++i) {
    const AbstractFeature& child = *folder.GetChild(i);
    EXPECT_EQ(i, folder.FindChild(child));
    EXPECT_EQ(&folder, child.GetParent());
    names += child.GetName();
  }
  return names;
}

RefPtr<Placemark> MakePlacemark(const QString& name) {
  RefPtr<Placemark> placemark = Placemark::CreatePlacemark();
  placemark->SetName(name);
  return placemark;
}

template <class T> RefPtr<T> Fill(const QString& names) {
  RefPtr<T> folder(new T(KmlId(), QString()));
  for (const QChar name : names)
    folder->AddChild(*MakePlacemark(name));
  return folder;
}

RefPtr<Style> MakeStyle(const QString& id) {
  return RefPtr<Style>(new Style(KmlId(id, "file:///dir/doc.kml"), QString()));
}

} // namespace

TEST_F(FolderTest, NoIndexOutOfRangeIsAnswered) {
  const auto folder = Fill<Folder>("ab");
  const RefPtr<Document> document(new Document(KmlId(), QString()));
  const RefPtr<SchemaObjectList> list(new SchemaObjectList(KmlId(), QString()));
  const RefPtr<MultiGeometry> shapes(new MultiGeometry(KmlId(), QString()));
  const RefPtr<MultiLineString> lines(new MultiLineString(KmlId(), QString()));
  const RefPtr<LinearRingContainer> rings(new LinearRingContainer(KmlId(), QString()));
  const RefPtr<AbstractFeatureContainer> features(new AbstractFeatureContainer(KmlId(), QString()));
  EXPECT_THROW(rings->get(0), std::out_of_range) << "without a polygon";
  rings->SetParent(RefPtr<Polygon>(new Polygon(KmlId(), QString())).get());
  features->SetParent(folder.get());
  for (const int index : {-1, 2, 7}) {
    EXPECT_THROW(folder->GetChild(index), std::out_of_range);
    EXPECT_THROW(folder->RemChild(index), std::out_of_range);
    EXPECT_THROW(features->get(index), std::out_of_range);
    EXPECT_THROW(rings->get(index), std::out_of_range);
    EXPECT_THROW(document->GetStyleSelector(index), std::out_of_range);
    EXPECT_THROW(list->GetObject(index), std::out_of_range);
    EXPECT_THROW(shapes->GetGeometry(index), std::out_of_range);
    EXPECT_THROW(lines->GetLineString(index), std::out_of_range);
  }
}

TEST_F(FolderTest, AFolderNeverGetsIntoItself) {
  const auto top = Fill<Folder>("");
  const auto middle = Fill<Channel>("");
  const auto leaf = Fill<Channel>("");
  top->AddChild(*middle);
  middle->AddChild(*leaf);
  EXPECT_FALSE(top->AddChild(*top));
  EXPECT_FALSE(leaf->AddChild(*leaf));
  EXPECT_FALSE(leaf->AddChild(*middle));
  EXPECT_FALSE(leaf->InsertChild(0, *top));
  EXPECT_EQ(0, leaf->GetChildCount());
  EXPECT_TRUE(top->AddChild(*leaf)) << "up is fine";
}

TEST_F(FolderTest, MovingAllChildrenTellsEachSideOnce) {
  QString names;
  for (int i = 0; i < 100; ++i)
    names += QChar('a' + i % 26);
  const auto from = Fill<Folder>(names);
  const auto to = Fill<Folder>("x");
  FieldLog fromLog(*from);
  FieldLog toLog(*to);
  AbstractFolder::MoveAllChildren(from.get(), to.get());
  EXPECT_EQ("", Names(*from));
  EXPECT_EQ("x" + names, Names(*to));
  EXPECT_EQ("AbstractFeature", fromLog.take());
  EXPECT_EQ("AbstractFeature", toLog.take());
  AbstractFolder::MoveAllChildren(from.get(), to.get());
  EXPECT_EQ("", toLog.take());
}

TEST_F(FolderTest, SortingKeepsTheOrderOfEqualNames) {
  const auto folder = Fill<Folder>("bBaAc");
  FieldLog log(*folder);
  folder->SortChildrenByName();
  EXPECT_EQ("aAbBc", Names(*folder));
  EXPECT_EQ("AbstractFeature", log.take());
  folder->SortChildrenByName();
  EXPECT_EQ("", log.take());
}

TEST_F(FolderTest, AFolderOutsideTheTreeCanBeHiddenAsAWhole) {
  const auto folder = Read<Folder>("<Folder><Folder><Placemark/></Folder></Folder>");
  const AbstractFeature* leaf = static_cast<Folder*>(folder->GetChild(0))->GetChild(0);
  folder->RequireParentInheritedVisibility(true);
  EXPECT_FALSE(folder->isVisible());
  EXPECT_FALSE(leaf->isVisible());
  RefPtr<Globe> globe(new Globe(KmlId(), QString()));
  globe->AddChild(*folder);
  EXPECT_TRUE(leaf->isVisible());
}

TEST_F(FolderTest, AChannelIsQuietAndSwapsOnRemoval) {
  const auto channel = Fill<Channel>("abc");
  FieldLog log(*channel);
  EXPECT_TRUE(channel->RemChild(0));
  EXPECT_EQ("cb", Names(*channel));
  EXPECT_FALSE(channel->InternalRemoveChild(2));
  EXPECT_FALSE(channel->InternalRemoveChild(-1));
  EXPECT_FALSE(channel->InternalRemoveChild(*MakePlacemark("x")));
  RefPtr<AbstractFeature> nobody[] = {nullptr, MakePlacemark("x")};
  EXPECT_EQ(0, channel->RemoveChildren({nobody, 2}));
  EXPECT_TRUE(channel->InternalRemoveChild(1));
  EXPECT_EQ("c", Names(*channel));

  const auto folder = Fill<Folder>("xy");
  AbstractFolder::MoveAllChildren(folder.get(), channel.get());
  EXPECT_EQ("cxy", Names(*channel));
  EXPECT_EQ("", log.take());
  folder->AddChild(*channel->GetChild(0));
  EXPECT_EQ("yx", Names(*channel)) << "a child that moves away leaves as fast";
  channel->SetName("n");
  EXPECT_EQ("name", log.take());

  const float levels[] = {1.0F, 2.0F};
  channel->SetLodFadeOutLevels(levels, 2);
  EXPECT_EQ(2.0F, channel->GetFadeOutLevel(1));
  EXPECT_EQ(31.0F, channel->GetFadeOutLevel(2));
  EXPECT_EQ(31.0F, channel->GetFadeOutLevel(-1));
}

TEST_F(FolderTest, DatabaseDrawOrders) {
  const auto make = [](bool own, int order) {
    RefPtr<Database> database(new Database("u", KmlId(), QString(), false, own));
    DatabaseSchema::GetSingleton().drawOrder.CheckSet(*database, order);
    return database;
  };
  const auto a = make(false, 1);
  const auto b = make(true, 2);
  const auto c = make(false, 3);
  EXPECT_EQ(a->GetChildDrawOrder() + 1, b->GetChildDrawOrder());
  EXPECT_EQ(-1, c->GetDrawOrder());
  EXPECT_EQ(2, b->GetDrawOrder());
  a->AddChild(*c);
  EXPECT_EQ(1, c->GetDrawOrder()) << "the database at the top";
  a->AddChild(*b);
  b->AddChild(*c);
  EXPECT_EQ(2, c->GetDrawOrder()) << "the nearest one with an order of its own";
  const auto top = Fill<Folder>("");
  top->AddChild(*a);
  EXPECT_EQ(-1, a->GetDrawOrder());
}

TEST_F(FolderTest, APlanetIsNeverWritten) {
  const RefPtr<Planet> planet(new Planet(KmlId(), QString()));
  planet->SetName("p");
  const auto folder = Fill<Folder>("");
  folder->AddChild(*planet);
  EXPECT_FALSE(Write(*folder).contains("Planet"));
  EXPECT_EQ(0U, planet->GetAccess());
}

TEST_F(FolderTest, AStyleWithoutAnIdBecomesTheDocumentsOwn) {
  const RefPtr<Document> document(new Document(KmlId(), QString()));
  const auto named = MakeStyle("a");
  const auto anonymous = MakeStyle("");
  EXPECT_TRUE(document->AddStyleSelector(*named));
  EXPECT_FALSE(document->AddStyleSelector(*named));
  EXPECT_TRUE(document->AddStyleSelector(*anonymous));
  EXPECT_EQ(1, document->GetStyleSelectorCount());
  EXPECT_EQ(named.get(), document->GetStyleSelector(0));
  EXPECT_EQ(anonymous.get(), document->GetInlineStyleSelector());
  EXPECT_TRUE(anonymous->HasOwner(*document));
}

TEST_F(FolderTest, AStyleThatComesIntoADocumentLeavesTheOther) {
  const RefPtr<Document> home(new Document(KmlId(), QString()));
  const RefPtr<Document> other(new Document(KmlId(), QString()));
  const auto shared = MakeStyle("s");
  const auto own = MakeStyle("o");
  home->AddStyleSelector(*MakeStyle("a"));
  home->AddStyleSelector(*shared);
  other->AddStyleSelector(*own);
  other->SetReferencedStyleSelector(shared.get());
  EXPECT_EQ(-1, other->FindStyleSelector(*shared)) << "it only refers to it";
  EXPECT_FALSE(other->RemStyleSelector(*shared));
  EXPECT_EQ(own.get(), other->GetStyleSelector(0));

  EXPECT_TRUE(other->InsertStyleSelector(7, *shared)) << "beyond the end";
  EXPECT_FALSE(other->AddStyleSelector(*shared));
  EXPECT_TRUE(other->InsertStyleSelector(0, *shared));
  EXPECT_EQ(-1, home->FindStyleSelector(*shared)) << "it has left";
  EXPECT_EQ(1, home->GetStyleSelectorCount());
  EXPECT_EQ("a", home->GetStyleSelector(0)->GetId());
  EXPECT_EQ(0, other->FindStyleSelector(*shared));
}

TEST_F(FolderTest, OwnerDocumentIsTheNearest) {
  const auto outer = Read<Document>("<Document><Document id='inner'><Folder><Placemark>"
                                    "<Point id='p'/></Placemark></Folder></Document></Document>");
  EXPECT_EQ(SchemaObject::find(GetDocumentUrl(), "inner"),
            SchemaObject::find(GetDocumentUrl(), "p")->GetOwnerDocument());
}

} // namespace vorrel::kestan
