#include "kestan/core/schema.h"
#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"
#include "tests/support/workers.h"

#include <type_traits>

namespace vorrel::kestan {

using ObjectTest = KmlTest;

static_assert(std::is_convertible_v<RefPtr<Probe>, RefPtr<SchemaObject>> &&
                  !std::is_convertible_v<RefPtr<SchemaObject>, RefPtr<Probe>>,
              "references convert to bases only");

namespace {

const ProbeSchema& Fields() { return ProbeSchema::GetSingleton(); }

/// The labels of the children in order, "-" for an empty place; checks that each child knows its
/// place and owner.
QString Kids(const Probe& probe) {
  QString text;
  for (int i = 0; i < Fields().kids.getCount(probe); ++i) {
    const SchemaObject* kid = Fields().kids.GetObject(probe, i);
    text += kid ? kid->GetId() : QString("-");
    if (kid) {
      EXPECT_EQ(i, kid->GetArrayIndex());
      EXPECT_TRUE(kid->HasOwner(probe));
    }
  }
  return text;
}

RefPtr<Probe> MakeWithKids(const QString& ids) {
  auto probe = Probe::Make();
  for (const QChar id : ids)
    Fields().kids.add(*probe, Probe::Make(id).get());
  probe->notices_ = 0;
  return probe;
}

} // namespace

TEST_F(ObjectTest, TheNewestObjectWithAnIdIsFound) {
  const auto first = Probe::Make("a");
  const KmlId id = first->GetKmlId();
  EXPECT_EQ(first.get(), SchemaObject::find(id));
  auto second = Probe::Make("a");
  EXPECT_EQ(second.get(), SchemaObject::find(id));
  second.reset();
  EXPECT_EQ(nullptr, SchemaObject::find(id)) << "the first one left when the second came";
  EXPECT_EQ(nullptr, SchemaObject::find(KmlId("", id.url)));

  const auto third = Probe::GetClassSchema().FindCreateInstance(id, "", nullptr);
  EXPECT_EQ(third, Probe::GetClassSchema().FindCreateInstance(id, "", nullptr));
}

TEST_F(ObjectTest, RuntimeIdsAreFreshOnEachThreadAndKeepTheirName) {
  const KmlId given("x", "http://a");
  const KmlId id = SchemaObject::GetUniqueRuntimeId(given);
  EXPECT_EQ("x", id.id);
  EXPECT_TRUE(id.url.startsWith("runtime://clone"));
  EXPECT_EQ(id, SchemaObject::GetUniqueRuntimeId(given)) << "free until an object holds it";
  const auto object = Probe::GetClassSchema().CreateInstance(id, "", nullptr);
  EXPECT_NE(id, SchemaObject::GetUniqueRuntimeId(given));
  EXPECT_EQ("", object->GetBaseUrl()) << "a run-time URL is no base";

  KmlId elsewhere;
  const auto mine = object->clone(true, nullptr);
  {
    Workers worker(1, [&](int) { elsewhere = SchemaObject::GetUniqueRuntimeId(given); });
  }
  EXPECT_NE(mine->GetUrl(), elsewhere.url) << "on no other thread";
}

TEST_F(ObjectTest, AnEntryWithoutAValueStaysOneInACopy) {
  const auto source = Read<Probe>("<Probe><value>a</value><value/></Probe>");
  EXPECT_EQ(Write(*source), Write(*source->clone(true, nullptr)));
  const auto other = Read<Probe>("<Probe><value/><value>b</value><value/></Probe>");
  other->copy(*source, true, nullptr);
  EXPECT_EQ(Write(*source), Write(*other));
}

TEST_F(ObjectTest, ATextThatGivesAnEntryNoValueComesBackUntilTheArrayIsSet) {
  const auto probe =
      Read<Probe>("<Probe><int>x</int><fix>1 2 3</fix><fix>here</fix><fix>4 5 6</fix>"
                  "<fix>&lt;</fix></Probe>");
  EXPECT_EQ((mmvector<int>{0}), Fields().ints.get(*probe));
  ASSERT_EQ(4U, Fields().track.get(*probe).size());
  EXPECT_EQ((Vec3<double>{0.0, 0.0, 0.0}), Fields().track.get(*probe)[1]);
  const QString text = Write(*probe);
  EXPECT_TRUE(text.contains("<fix>1 2 3</fix>\n\t<fix>here</fix>\n\t<fix>4 5 6</fix>\n\t"
                            "<fix>&lt;</fix>"))
      << text.toStdString();
  EXPECT_EQ(text, Write(*ReadObject(text)));
  EXPECT_EQ(text, Write(*probe->clone(true, nullptr)));
  Fields().track.fromString(*probe, nullptr, nullptr, "7 8 9", 3, nullptr);
  EXPECT_TRUE(Write(*probe).contains("<fix>0 0 0</fix>\n\t<fix>4 5 6</fix>\n\t<fix>7 8 9</fix>"));
}

TEST_F(ObjectTest, AChildHasOneOwnerAndOutlivesIt) {
  const auto a = Probe::Make();
  auto b = Probe::Make();
  const auto child = Probe::Make();
  EXPECT_TRUE(Fields().child.set(*a, child.get(), 0));
  a->notices_ = 0;
  EXPECT_TRUE(Fields().child.set(*a, child.get(), 0));
  EXPECT_EQ(0, a->notices_) << "the present child changes nothing";
  EXPECT_FALSE(Fields().child.set(*a, a.get(), 0));

  EXPECT_TRUE(Fields().kids.add(*b, child.get()));
  EXPECT_FALSE(Fields().child.get(*a));
  EXPECT_EQ(1, a->notices_) << "the former owner hears of its loss";
  EXPECT_EQ(b.get(), child->GetOwner(0));
  EXPECT_EQ(0, child->GetArrayIndex());
  int index = 7;
  EXPECT_EQ(&Fields().kids, b->FindObject(*child, &index));
  EXPECT_EQ(0, index);
  EXPECT_EQ(nullptr, a->FindObject(*child, &index));
  EXPECT_EQ(-1, index);

  b.reset();
  EXPECT_EQ(nullptr, child->GetOwner(0));
  child->AddOwner(*a);
  EXPECT_EQ(nullptr, child->GetOwner(0)) << "an owner holds what it owns";
  EXPECT_EQ(-1, child->GetArrayIndex());
  EXPECT_EQ(2, Probe::s_alive);
}

TEST_F(ObjectTest, AChildLeavesEveryOtherPlaceAndClosesNoRing) {
  const auto a = Probe::Make("a");
  const auto b = Probe::Make("b");
  EXPECT_TRUE(Fields().child.set(*a, b.get(), 0));
  EXPECT_FALSE(Fields().child.set(*b, a.get(), 0)) << "it would stand below itself";
  EXPECT_FALSE(Fields().kids.add(*b, a.get()));
  EXPECT_TRUE(Fields().kids.insert(*a, b.get(), -1));
  EXPECT_FALSE(Fields().child.get(*a));
  EXPECT_EQ("b", Kids(*a));
  EXPECT_TRUE(Fields().child.set(*a, b.get(), 0));
  EXPECT_EQ("", Kids(*a));

  Fields().kids.add(*a, Probe::Make("c").get());
  const RefPtr<SchemaObject> held(Fields().kids.GetObject(*a, 0));
  Fields().kids.setCount(*a, 0);
  EXPECT_EQ(nullptr, held->GetOwner(0)) << "let go";
}

TEST_F(ObjectTest, InsertMovesAndKeepsEveryPlaceRight) {
  struct Case {
    const char* kid;
    int index;
    bool answer;
    const char* order;
    int notices;
  };
  const Case cases[] = {
      {"a", 2, true, "bcad", 1},  {"d", 0, true, "dabc", 1},   {"b", 1, true, "abcd", 0},
      {"a", 4, true, "bcda", 1},  {"a", 5, false, "abcd", 0},  {"a", -1, false, "abcd", 0},
      {"x", 1, true, "axbcd", 1}, {"x", -1, true, "abcdx", 1}, {"x", 9, true, "abcdx", 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(QString("%1 to %2").arg(c.kid).arg(c.index).toStdString());
    const auto probe = MakeWithKids("abcd");
    RefPtr<SchemaObject> kid(SchemaObject::find("http://a/b.kml", c.kid));
    if (!kid)
      kid = Probe::Make(c.kid);
    EXPECT_EQ(c.answer, Fields().kids.insert(*probe, kid.get(), c.index));
    EXPECT_EQ(c.order, Kids(*probe));
    EXPECT_EQ(c.notices, probe->notices_);
  }
}

TEST_F(ObjectTest, SetReplacesPadsAndClosesTheFormerPlace) {
  struct Case {
    const char* kid;
    int index;
    const char* order;
  };
  const Case cases[] = {{"x", 1, "axc"}, {"x", 5, "abc--x"}, {"a", 2, "ba"},
                        {"c", 0, "cb"},  {"a", 4, "bc-a"},   {"x", -1, "abcx"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(QString("%1 at %2").arg(c.kid).arg(c.index).toStdString());
    const auto probe = MakeWithKids("abc");
    RefPtr<SchemaObject> kid(SchemaObject::find("http://a/b.kml", c.kid));
    if (!kid)
      kid = Probe::Make(c.kid);
    EXPECT_TRUE(Fields().kids.set(*probe, kid.get(), c.index));
    EXPECT_EQ(c.order, Kids(*probe));
  }
}

TEST_F(ObjectTest, RemovingSeveralKeepsTheOrderOfTheRest) {
  const auto probe = MakeWithKids("abcdef");
  Fields().kids.set(*probe, Probe::Make("x").get(), 7);
  EXPECT_EQ("abcdef-x", Kids(*probe));
  const int indices[] = {4, 1, 1, 99, -3};
  EXPECT_EQ(2, Fields().kids.EraseMultiple(probe.get(), {indices, 5}));
  EXPECT_EQ("acdf-x", Kids(*probe)) << "a place that was empty stays";
  EXPECT_TRUE(Fields().kids.remove(*probe, 4));
  EXPECT_EQ("acdfx", Kids(*probe));
  EXPECT_FALSE(Fields().kids.remove(*probe, Probe::Make("y").get()));
}

TEST_F(ObjectTest, ADeepCloneIsItsOwnTreeUnderNewIds) {
  const auto source = Read<Probe>("<Probe id='s' label='l' p:x='1' xmlns:p='urn:p'>"
                                  "<count>3</count><child><Probe id='c'/></child>"
                                  "<Probe id='k'><mask>2</mask></Probe><p:more>m</p:more></Probe>");
  const auto clone = source->clone(true, nullptr);
  EXPECT_EQ("s", clone->GetId());
  EXPECT_TRUE(clone->GetUrl().startsWith("runtime://clone"));
  EXPECT_EQ(source.get(), SchemaObject::find(source->GetKmlId()));
  EXPECT_EQ(Write(*source), Write(*clone));
  EXPECT_NE(Fields().kids.GetObject(*source, 0), Fields().kids.GetObject(*clone, 0));

  const mmvector<const Field*> excluded{&Fields().count, &Fields().kids};
  const auto partial = source->clone(true, &excluded);
  EXPECT_EQ(0, Fields().count.get(*partial));
  EXPECT_EQ(0, Fields().kids.getCount(*partial));
  EXPECT_FALSE(Fields().child.get(*source->clone(false, nullptr)));
}

TEST_F(ObjectTest, CopyKeepsChildrenWhenDeepAndMovesThemWhenShallow) {
  const QString text("<Probe><child><Probe><count>1</count></Probe></child>"
                     "<Probe id='a'/><Probe id='b'/></Probe>");
  const auto source = Read<Probe>(text);
  const auto target = MakeWithKids("xyz");
  const auto kept = Fields().kids.GetObject(*target, 0);
  target->copy(*source, true, nullptr);
  EXPECT_EQ(2, Fields().kids.getCount(*target));
  EXPECT_EQ(kept, Fields().kids.GetObject(*target, 0)) << "a child of the same class stays";
  EXPECT_TRUE(Fields().child.get(*source));

  const auto thief = Probe::Make();
  thief->copy(*source, false, nullptr);
  EXPECT_EQ("ab", Kids(*thief));
  EXPECT_EQ(0, Fields().kids.getCount(*source));
  EXPECT_FALSE(Fields().child.get(*source));

  const auto padded = MakeWithKids("ab");
  Fields().kids.set(*padded, Probe::Make("c").get(), 3);
  thief->copy(*padded, false, nullptr);
  EXPECT_EQ("abc", Kids(*thief)) << "an empty place doesn't hold up what's behind it";
}

TEST_F(ObjectTest, HandlersAnswerAndInputHandlersShowInABit) {
  const auto probe = Probe::Make();
  HandlerEvent event;
  EXPECT_TRUE(probe->OnHandler(40, event)) << "nobody objects";
  probe->SetHandlerFunc(40, [](HandlerEvent& e) { return e.target != e.sender; });
  EXPECT_FALSE(probe->OnHandler(40, event));
  EXPECT_FALSE(probe->GetBit(kBitHasInputHandler));
  probe->SetHandlerFunc(2, [](HandlerEvent&) { return true; });
  probe->SetHandlerFunc(25, [](HandlerEvent&) { return true; });
  probe->SetHandlerFunc(2, nullptr);
  EXPECT_TRUE(probe->GetBit(kBitHasInputHandler));
  probe->SetHandlerFunc(25, nullptr);
  EXPECT_FALSE(probe->GetBit(kBitHasInputHandler));

  static int deaths = 0;
  auto dying = Probe::Make();
  dying->SetHandlerFunc(kHandlerPreDelete, [](HandlerEvent& e) {
    const RefPtr<SchemaObject> held(e.target); // must not start another deletion
    ++deaths;
    return true;
  });
  dying.reset();
  EXPECT_EQ(1, deaths);
}

TEST_F(ObjectTest, ADeepTreeIsClonedSearchedAndEndedOnTheUsualStack) {
  constexpr int kDepth = 100000;
  RefPtr<Probe> root = Probe::Make();
  Probe* const deepest = root.get();
  for (int i = 1; i < kDepth; ++i) {
    RefPtr<Probe> owner = Probe::Make();
    Fields().child.set(*owner, root.get(), 0);
    root = std::move(owner);
  }
  EXPECT_EQ(kDepth, Probe::s_alive);
  Fields().count.SetTypedObject(*deepest, 7);
  EXPECT_EQ(deepest->GetRevision(), root->GetRevision()) << "the change has climbed";
  mmvector<SchemaObject*> found;
  const auto clone = root->clone(true, nullptr);
  clone->FindBySchema(Probe::GetClassSchema(), found);
  ASSERT_EQ(static_cast<std::size_t>(kDepth), found.size());
  EXPECT_EQ(7, Fields().count.get(*found.back()));
  root.reset();
  EXPECT_EQ(kDepth, Probe::s_alive);
}

} // namespace vorrel::kestan
