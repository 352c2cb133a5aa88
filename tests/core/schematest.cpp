#include "kestan/core/schema.h"
#include "kestan/core/bitfield.h"
#include "kestan/core/library.h"
#include "kestan/link/abstractlink.h"
#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"
#include "tests/support/observers.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <set>

namespace vorrel::kestan {

using SchemaTest = KmlTest;

namespace {

void ForEachSchema(const Schema& schema, const std::function<void(const Schema&)>& visit) {
  visit(schema);
  for (const Schema* derived : schema.GetDerived())
    ForEachSchema(*derived, visit);
}

/// Classes that count as concrete, but that no document can make.
bool IsMadeByItsConstructor(const Schema& schema) {
  return schema.GetName() == "Planet" || schema.GetName() == "Database";
}

/// The element of this name as a document of its own, for a parser that knows the prefixes.
QString Standalone(const QString& text, const QString& name) {
  const auto begin = text.indexOf("<kml ") + 4;
  const QString namespaces = text.mid(begin, text.indexOf('>', begin) - begin);
  return Element(text, name).replace(0, name.size() + 1, "<" + name + namespaces);
}

} // namespace

TEST_F(SchemaTest, EveryMemberLiesInsideItsObjectAndHasAnIndexOfItsOwn) {
  int schemas = 0;
  ForEachSchema(SchemaObject::GetClassSchema(), [&](const Schema& schema) {
    SCOPED_TRACE(schema.GetName().toStdString());
    ++schemas;
    std::set<unsigned> indices;
    for (const auto* list : {&schema.GetSerializedFields(), &schema.GetAttributes()}) {
      for (const Field* field : *list) {
        SCOPED_TRACE(field->GetName().toStdString());
        EXPECT_TRUE(indices.insert(field->GetIndex()).second);
        if (field->HasFlag(Field::kProxy))
          continue;
        EXPECT_EQ(0U, field->GetOffset() % field->GetAlign());
        EXPECT_LE(field->GetOffset() + field->getSize(), schema.GetSize());
      }
    }
  });
  EXPECT_GT(schemas, 30);
}

TEST_F(SchemaTest, EveryClassWritesReadsAndClonesItsDefaultsAlike) {
  int classes = 0;
  ForEachSchema(SchemaObject::GetClassSchema(), [&](const Schema& schema) {
    SCOPED_TRACE(schema.GetName().toStdString());
    const auto object = schema.CreateInstance(KmlId("x", GetDocumentUrl()), "", nullptr);
    EXPECT_TRUE(object || schema.IsAbstract() || IsMadeByItsConstructor(schema));
    if (!object)
      return;
    ++classes;
    const QString text = Write(*object, kWriteNoHint);
    EXPECT_EQ(text, Write(*object->clone(true, nullptr), kWriteNoHint));
    if (Element(text, object->GetPrefixedName()).isEmpty() || schema.GetName() == "kml")
      return; // a class without a form of its own, or the root, which is read as its content
    const auto again = ReadObject(Standalone(text, object->GetPrefixedName()));
    ASSERT_TRUE(again) << error().toStdString();
    EXPECT_EQ(text, Write(*again, kWriteNoHint));
  });
  EXPECT_GT(classes, 8);
}

TEST_F(SchemaTest, TheFieldsOfAllElementsComeBackInTheirOrderUnderTheirNames) {
  const QString text = QString::fromUtf8(ReadData("fields.kml"));
  const auto document = ReadObject(text);
  ASSERT_TRUE(document) << error().toStdString();
  EXPECT_EQ(QStringList("Unknown element <Other>"), messages());
  EXPECT_EQ(text, Write(*document));
}

TEST_F(SchemaTest, NamesLeadToFieldsThenToTheClassesThatFieldsAccept) {
  const Schema& schema = Probe::GetClassSchema();
  const ProbeSchema& fields = ProbeSchema::GetSingleton();
  const Schema* child = nullptr;
  EXPECT_EQ(&fields.count, schema.FindField("count", Namespace::kKml, &child));
  EXPECT_EQ(nullptr, child);
  EXPECT_EQ(&fields.kids, schema.FindField("Probe", Namespace::kKml, &child));
  EXPECT_EQ(&schema, child);
  EXPECT_EQ(nullptr, schema.FindField("Point", Namespace::kKml, &child));
  EXPECT_NE(nullptr, child) << "a class that no field accepts";
  for (const Namespace ns : {Namespace::kNone, Namespace::kUnknown, Namespace::kExt})
    EXPECT_EQ(nullptr, schema.FindField("count", ns, nullptr));
  EXPECT_EQ(nullptr, Schema::FindNamedSchema("count", Namespace::kKml));
}

TEST_F(SchemaTest, ASchemaOfTheRunTimeHasRoomForItsFieldsAndMayGoBeforeThoseDerivedFromIt) {
  class RunTimeSchema final : public Schema {
  public:
    RunTimeSchema(const QString& name, const Schema& base)
        : Schema(name, base.GetSize(), &base, Namespace::kKml, false) {}
    RefPtr<SchemaObject> CreateInstance(const KmlId& id, const QString& baseUrl,
                                        MemoryManager* manager) const override {
      return GetBase()->CreateInstanceDerived(*this, id, baseUrl, manager);
    }
    BitField bit{*this, "bit", 31, true, 0, Field::kElement};
    SimpleField<bool> last{*this, "last", 0, Field::kElement};
  };
  auto base = std::make_unique<RunTimeSchema>("RunTimeLink", AbstractLink::GetClassSchema());
  EXPECT_LE(base->bit.GetOffset() + sizeof(std::uint32_t), base->last.GetOffset());
  EXPECT_LT(base->last.GetOffset(), base->GetSize());
  EXPECT_TRUE(base->CreateInstance(KmlId("l", GetDocumentUrl()), "", nullptr))
      << "links can be derived from";

  auto derived = std::make_unique<RunTimeSchema>("RunTimeLeaf", *base);
  auto observer = std::make_unique<OnCreate>(*base);
  base.reset();
  observer.reset();
  derived.reset(); // which knew the observer too
}

TEST(LibraryTest, StartsAndStopsAnyNumberOfTimes) {
  GShutdown();
  for (int i = 0; i < 3; ++i) {
    GInitialize();
    GInitialize();
    EXPECT_TRUE(GIsInitialized());
    EXPECT_NE(nullptr, GetResourceManager());
    EXPECT_NE(nullptr, Schema::FindNamedSchema("Probe", Namespace::kKml));
    GShutdown();
    EXPECT_FALSE(GIsInitialized());
    EXPECT_EQ(nullptr, Schema::FindNamedSchema("Probe", Namespace::kKml));
  }
}

} // namespace vorrel::kestan
