#include "kestan/custom/customschema.h"
#include "kestan/core/objectobserver.h"
#include "kestan/custom/customfieldschema.h"
#include "kestan/custom/customschemaobject.h"
#include "kestan/custom/customschemaschema.h"
#include "kestan/feature/document.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/pump.h"
#include "tests/support/workers.h"
#include "tests/update/updatetest.h"

#include <thread>

namespace vorrel::kestan {

class CustomSchemaTest : public UpdateTest {
protected:
  /// A document with a schema "S" of this content, and with features.
  RefPtr<Document> ReadDocument(const QString& fields, const QString& features = QString(),
                                const QString& attributes = "parent=\"Placemark\"") {
    return Read<Document>(QStringLiteral("<Document xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">"
                                         "<Schema name=\"S\" id=\"s\" %1>%2</Schema>%3</Document>")
                              .arg(attributes, fields, features));
  }
  static RefPtr<CustomSchema> GetSchema() {
    return RefPtr<CustomSchema>(CustomSchema::FindNamedCustomSchema(GetDocumentUrl(), "S"));
  }
  static RefPtr<SchemaObject> Make(const CustomSchema& schema) {
    return schema.CreateInstance(KmlId(), GetDocumentUrl(), nullptr);
  }
  static void Set(SchemaObject& object, const QString& name, const QString& text) {
    const Field* const field = object.FindField(name, Namespace::kKml, nullptr);
    ASSERT_TRUE(field) << name.toStdString();
    field->fromString(object, nullptr, nullptr, text, -1, nullptr);
  }
  /// The elements of an object, on one line.
  QString ElementsOf(const SchemaObject& object) const {
    const QString text = Write(object, kWriteNoHint | kWriteNoHoist).remove('\n').remove('\t');
    const int begin = text.indexOf('>', text.indexOf("<S")) + 1;
    return text.mid(begin, text.indexOf("</S>") - begin);
  }
};

TEST_F(CustomSchemaTest, InstancesComeBackAsTheyWereRead) {
  struct Case {
    const char* field;
    const char* value;
    const char* read;    // the value as text
    const char* written; // null for the same element
  };
  const Case cases[] = {
      {"<SimpleField type='int' name='v'/>", "<v>-5</v>", "-5", nullptr},
      {"<SimpleField type='int' name='v'/>", "<v>0</v>", "0", nullptr},
      {"<SimpleField type='int' name='v'/>", "", "0", nullptr},
      {"<SimpleField type='int' name='v'/>", "<v>some</v>", "0", nullptr},
      {"<SimpleField type='int' name='v'/>", "<v></v>", "0", nullptr},
      {"<SimpleField name='v' type='uint'/>", "<v>4294967295</v>", "4294967295", nullptr},
      {"<SimpleField type='short' name='v'/>", "<v>40000</v>", "40000", nullptr},
      {"<SimpleField type='float' name='v'/>", "<v a='1'>0.5</v>", "0.5", "<v a=\"1\">0.5</v>"},
      {"<SimpleField type='double' name='v'/>", "<v>1e999</v>", "0", nullptr},
      {"<SimpleField type='bool' name='v'/>", "<v>TRUE</v>", "1", "<v>1</v>"},
      {"<SimpleField type='bool' name='v'/>", "<v>maybe</v>", "0", nullptr},
      {"<SimpleField type='wstring' name='v'/>", "<v>a &lt; b</v>", "a < b", nullptr},
      {"<SimpleField type='string' name='v'/>", "<v></v>", "", nullptr},
      {"<SimpleField type='string' name='v'/>", "<v>a</v><v>b</v>", "b", nullptr},
      {"<gx:SimpleArrayField type='int' name='v'/>", "<v>1</v><v>x</v><v>3</v>", "1", nullptr},
      {"<gx:SimpleListField type='double' name='v'/>", "<v>1.5 2</v>", "1.5", nullptr},
      {"<gx:SimpleListField type='int' name='v'/>", "<v>1 2.5 3</v>", "1", nullptr},
      {"<ObjField type='Geometry' name='v'/>",
       "<v><LineString><coordinates></coordinates></LineString></v>", "", nullptr},
      {"<ObjArrayField type='Snippet' name='v'/>",
       "<v><Snippet>a</Snippet><Snippet>b</Snippet></v>", "a", nullptr},
      {"<SimpleField type='int' name='name'/>", "<name>7</name>", "7", nullptr},
      // What makes no field stays, and so does what was meant for it.
      {"<SimpleField type='colour' name='v'/>", "<v>1</v>", nullptr, nullptr},
      {"<SimpleField type='Vec2' name='v'/>", "<v>1</v>", nullptr, nullptr},
      {"<ObjField type='Nothing' name='v'/>", "<v><Point></Point></v>", nullptr, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.field);
    SCOPED_TRACE(c.value);
    const QString features = QStringLiteral("<Folder><S id='i'>%1</S></Folder>").arg(c.value);
    const auto document = ReadDocument(c.field, features);
    const RefPtr<SchemaObject> instance(SchemaObject::find(GetDocumentUrl(), "i"));
    ASSERT_TRUE(instance);
    EXPECT_EQ("S", instance->getType());
    EXPECT_TRUE(instance->isOfType(Placemark::GetClassSchema()));
    const char* const name = QString(c.value).startsWith("<name") ? "name" : "v";
    const Field* const field = instance->FindField(name, Namespace::kKml, nullptr);
    ASSERT_EQ(c.read != nullptr, field != nullptr);
    if (field) {
      EXPECT_EQ(c.read, field->toString(*instance, 0));
    }
    const QString expected = c.written ? c.written : c.value;
    const QString text = Write(*document);
    EXPECT_EQ(expected, ElementsOf(*instance));
    EXPECT_EQ(expected, ElementsOf(*instance->clone(true, nullptr)));
    EXPECT_EQ(text, Write(*ReadObject(text)));
    EXPECT_EQ(text, Write(*document->clone(true, nullptr)));
  }
}

TEST_F(CustomSchemaTest, TheParentDecidesWhatInstancesAre) {
  struct Case {
    const char* attributes;
    const char* instance; // the class from which instances are derived; null for none
  };
  const Case cases[] = {
      {"", "CustomSchemaObject"},          {"parent='Placemark'", "Placemark"},
      {"parent='Window'", "Window"},       {"parent='AbstractLink'", "AbstractLink"},
      {"parent='Folder'", nullptr},        {"parent='Nothing'", "CustomSchemaObject"},
      {"parent='S'", "CustomSchemaObject"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.attributes);
    const auto document =
        ReadDocument("<SimpleField type='int' name='n'/>", QString(), c.attributes);
    const auto instance = Make(*GetSchema());
    ASSERT_EQ(c.instance != nullptr, bool(instance));
    if (!instance)
      continue;
    const QString type(c.instance);
    const bool isPlain = dynamic_cast<CustomSchemaObject*>(instance.get()) != nullptr;
    EXPECT_TRUE(type == "CustomSchemaObject" ? isPlain : instance->isOfType(type));
    Set(*instance, "n", "3");
    EXPECT_EQ("<n>3</n>", ElementsOf(*instance).remove("<name></name>"));
  }
}

TEST_F(CustomSchemaTest, InstancesKeepTheirLayoutWhateverBecomesOfTheClass) {
  const char* const kFields = "<SimpleField type='int' name='a' id='fa'/>"
                              "<SimpleField type='string' name='b' id='fb'/>";
  const CustomSchemaSchema& fields = CustomSchemaSchema::GetSingleton();
  const CustomFieldSchema& fieldFields = CustomFieldSchema::GetSingleton();
  struct Case {
    const char* what;
    std::function<void(Document&, CustomSchema&)> change;
    const char* after; // the fields of a later instance
  };
  const Case cases[] = {
      {"a declaration arrives",
       [&](Document&, CustomSchema& s) {
         new CustomField(SimpleFieldSchema::GetSingleton(), s, "c", CustomField::kDouble);
       },
       "a b c"},
      {"one arrives by an update",
       [&](Document&, CustomSchema&) {
         Apply("<Create><Schema targetId='s'><SimpleField type='int' name='c'/></Schema></Create>");
       },
       "a b c"},
      {"one goes", [&](Document&, CustomSchema& s) { fields.customFields.remove(s, 0); }, "b"},
      {"they change places", [&](Document&, CustomSchema& s) { fields.customFields.reverse(s); },
       "b a"},
      {"one changes its name",
       [&](Document&, CustomSchema& s) {
         fieldFields.name.SetTypedObject(*s.GetCustomField("a"), "z");
       },
       "z b"},
      {"one changes its type",
       [&](Document&, CustomSchema& s) {
         fieldFields.type.SetTypedObject(*s.GetCustomField("a"), "double");
       },
       "a b"},
      {"the parent changes", [](Document&, CustomSchema& s) { s.SetParent("Window"); }, "a b"},
      {"the parent goes", [](Document&, CustomSchema& s) { s.SetParent(QString()); }, "a b"},
      {"the name changes", [](Document&, CustomSchema& s) { s.SetName("Other"); }, "a b"},
      {"the document goes",
       [&](Document& d, CustomSchema& s) {
         const auto* field = d.FindObject(s, nullptr);
         static_cast<const ObjArrayFieldBase*>(field)->remove(d, &s);
       },
       "a b"},
  };
  for (const bool hasInstance : {true, false}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.what);
      const auto document = ReadDocument(kFields);
      auto schema = GetSchema();
      ASSERT_TRUE(schema);
      RefPtr<SchemaObject> instance;
      if (hasInstance) {
        instance = Make(*schema);
        Set(*instance, "a", "12");
        Set(*instance, "b", "long enough to lie on the heap");
      }
      c.change(*document, *schema);
      if (instance) {
        const QString text = Write(*instance, kWriteNoHoist);
        EXPECT_EQ("<a>12</a>", Element(text, "a"));
        EXPECT_TRUE(Make(*schema)) << "with the same layout";
        Set(*instance, "b", "another one that lies there");
        EXPECT_EQ("<b>another one that lies there</b>",
                  Element(Write(*instance->clone(true, nullptr), kWriteNoHoist), "b"));
      }
      instance.reset();
      instance = Make(*schema);
      ASSERT_TRUE(instance);
      QStringList names;
      unsigned end = schema->GetBase()->GetSize();
      for (const Field* field : schema->GetFields()) {
        names += field->GetName();
        EXPECT_LE(end, field->GetOffset());
        EXPECT_EQ(field, instance->FindField(field->GetName(), Namespace::kKml, nullptr));
        end = field->GetOffset() + field->getSize();
        Set(*instance, field->GetName(), "1");
      }
      EXPECT_EQ(c.after, names.join(' '));
      EXPECT_LE(end, schema->Schema::GetSize());
      schema.reset();
      instance->clone(true, nullptr); // the instance keeps the class
    }
  }
}

TEST_F(CustomSchemaTest, ClassesAreFoundByTheDocumentAndTheNameThatTheyHave) {
  const auto find = [](const QString& name) {
    return CustomSchema::FindNamedCustomSchema(GetDocumentUrl(), name);
  };
  auto document = ReadDocument("");
  EXPECT_EQ(nullptr, CustomSchema::FindNamedCustomSchema("http://example.com/other.kml", "S"));
  const auto first = GetSchema();
  ASSERT_TRUE(first);
  EXPECT_EQ(GetDocumentUrl() + "#S", first->GetKey());
  document = ReadDocument("");
  EXPECT_NE(first, GetSchema()) << "the same document again";
  const auto early =
      Read<Document>("<Document><S id='early'/><Schema name='S' parent='Placemark'/></Document>");
  EXPECT_EQ(nullptr, SchemaObject::find(GetDocumentUrl(), "early")) << "not declared there";
  document = ReadDocument("");
  EXPECT_TRUE(Make(*first));
  first->SetName("T");
  EXPECT_EQ(first.get(), find("T"));
  first->SetName("S");
  EXPECT_EQ(first.get(), find("S"));
  EXPECT_EQ(nullptr, find("T"));

  // Those of the library come first, and names that no element can have are only names.
  for (const char* name : {"Folder", "two words", "a:b", ""}) {
    SCOPED_TRACE(name);
    first->SetName(name);
    const auto folder = Read<Folder>("<Folder><Folder id='f'/></Folder>");
    EXPECT_EQ(1, folder->GetChildCount());
    EXPECT_EQ("Folder", SchemaObject::find(GetDocumentUrl(), "f")->getType());
    const auto instance = Make(*first);
    EXPECT_TRUE(folder->AddChild(static_cast<AbstractFeature&>(*instance)));
    EXPECT_TRUE(Write(*folder, kWriteNoHoist).contains("<Placemark>"));
  }
}

TEST_F(CustomSchemaTest, ThreadsKeepTheirClassesApartUntilTheyAreMerged) {
  const QString text =
      QString("<Document><Schema name=\"S\" parent=\"Placemark\"><SimpleField type=\"int\" "
              "name=\"n%1\"/></Schema><S><n%1>1</n%1></S></Document>");
  RefPtr<SchemaObject> documents[3];
  documents[2] = ReadAt(GetDocumentUrl(), text.arg(2));
  {
    Workers workers(
        2, [&](int number) { documents[number] = ReadAt(GetDocumentUrl(), text.arg(number)); });
    workers.Finish();
    EXPECT_TRUE(GetSchema()->GetCustomField("n2"));
    workers.Merge(0);
    EXPECT_TRUE(GetSchema()->GetCustomField("n0")) << "the latest one counts";
  }
  EXPECT_TRUE(GetSchema()->GetCustomField("n1"));
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(Write(*documents[i]).contains(QStringLiteral("<n%1>1</n%1>").arg(i)));

  // The last that holds a class may end anywhere; the class ends where it's at home.
  auto instance = Make(*GetSchema());
  documents[1].reset();
  std::thread([&] { instance.reset(); }).join();
  EXPECT_TRUE(GetSchema());
  while (Pump::Run(0) == 0.0) {
  }
  EXPECT_FALSE(GetSchema());
}

TEST_F(CustomSchemaTest, UpdatesKnowTheClassesOfTheDocumentThatTheyChange) {
  const auto document = ReadDocument("<SimpleField type='int' name='n'/>",
                                     "<Folder id='f'><S id='i'><n>1</n></S></Folder>");
  EXPECT_EQ(QStringList(), Apply("<Change><S targetId='i'><n>5</n></S></Change>"
                                 "<Create><Folder targetId='f'><S id='k'><n>6</n></S></Folder>"
                                 "</Create>"));
  EXPECT_EQ("<n>5</n>", ElementsOf(*SchemaObject::find(GetDocumentUrl(), "i")));
  EXPECT_EQ("<n>6</n>", ElementsOf(*SchemaObject::find(GetDocumentUrl(), "k")));
}

TEST_F(CustomSchemaTest, AClassThatNoMergeBroughtHomeEndsWithItsDocument) {
  RefPtr<SchemaObject> document;
  Workers workers(1, [&](int) {
    document =
        ReadAt(GetDocumentUrl(), "<Document><Schema name=\"S\" id=\"s\"/><Schema/></Document>");
  });
  workers.Finish();
  document.reset(); // on the main thread, before the worker's scope has ended
  EXPECT_FALSE(GetSchema());
}

TEST_F(CustomSchemaTest, WhatMakesNoFieldIsAFinding) {
  const auto check = [&](const QString& attributes, const QString& fields) {
    TakeReports();
    ReadAt(GetDocumentUrl(), QStringLiteral("<Document><Schema name='S' %1>%2</Schema></Document>")
                                 .arg(attributes, fields));
    return TakeReports().join(' ');
  };
  EXPECT_EQ("", check("parent='Placemark'", "<SimpleField type='int' name='a'/>"
                                            "<ObjField type='Point' name='p'/>"));
  for (const char* field :
       {"<SimpleField type='colour' name='a'/>", "<SimpleField type='Vec2' name='a'/>",
        "<ObjField type='int' name='a'/>"})
    EXPECT_TRUE(check("", field).contains("has no meaning here")) << field;
  for (const char* parent : {"parent='Folder'", "parent='S'"})
    EXPECT_TRUE(check(parent, "").contains("has no meaning here")) << parent;
}

TEST_F(CustomSchemaTest, TextsConvertByTheTypeThatIsDeclared) {
  struct Case {
    CustomField::Type type;
    const char* text;
    bool ok;
    double value;
  };
  const Case cases[] = {
      {CustomField::kInt, "-7", true, -7.0},          {CustomField::kInt, "7.5", false, 0.0},
      {CustomField::kUint, "-7", false, 0.0},         {CustomField::kShort, "-7", true, -7.0},
      {CustomField::kUshort, "65535", true, 65535.0}, {CustomField::kFloat, "0.5", true, 0.5},
      {CustomField::kDouble, "1e3", true, 1000.0},    {CustomField::kNoType, "2.5", true, 2.5},
      {CustomField::kBool, "1", false, 0.0},          {CustomField::kString, "1", false, 0.0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    bool ok = !c.ok;
    EXPECT_EQ(c.value, CustomField::GetValueAsDouble(c.type, c.text, &ok));
    EXPECT_EQ(c.ok, ok);
  }
}

} // namespace vorrel::kestan
