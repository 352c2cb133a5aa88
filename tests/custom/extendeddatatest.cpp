#include "kestan/custom/extendeddata.h"
#include "kestan/core/arraygaps.h"
#include "kestan/custom/arraydata.h"
#include "kestan/custom/customfield.h"
#include "kestan/custom/data.h"
#include "kestan/custom/schemadata.h"
#include "kestan/custom/simplearraydata.h"
#include "kestan/custom/simpledata.h"
#include "kestan/feature/document.h"
#include "kestan/feature/placemark.h"
#include "tests/support/workers.h"
#include "tests/update/updatetest.h"

namespace vorrel::kestan {

class ExtendedDataTest : public UpdateTest {
protected:
  static QString InPlacemark(const QString& data) {
    return QStringLiteral("<Placemark xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\" id=\"p\">"
                          "<ExtendedData>%1</ExtendedData></Placemark>")
        .arg(data);
  }
  static QString InDocument(const QString& before, const QString& data,
                            const QString& behind = QString()) {
    return QStringLiteral("<Document xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">%1%2%3"
                          "</Document>")
        .arg(before, InPlacemark(data).remove(" xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\""),
             behind);
  }
  static const ExtendedData* DataOf(const QString& id = "p") {
    auto* const object = SchemaObject::find(GetDocumentUrl(), id);
    return object ? static_cast<Placemark*>(object)->GetExtendedData() : nullptr;
  }
  static RefPtr<SchemaData> SchemaDataOf(const QString& id = "p") {
    const ExtendedData* const data = DataOf(id);
    return data && !data->GetSchemaDatas().empty() ? data->GetSchemaDatas()[0]
                                                   : RefPtr<SchemaData>();
  }
  /// The typed values of an instance, "name=value".
  static QString ValuesOf(SchemaObject* object) {
    QStringList values;
    for (const Field* field : object ? object->GetSchema().GetFields() : mmvector<Field*>()) {
      QStringList entries;
      for (int i = 0; i < (field->IsArray() ? field->getCount(*object) : 1); ++i)
        entries += field->toString(*object, i);
      values += field->GetName() + '=' + entries.join(',');
    }
    return values.join(' ');
  }
};

TEST_F(ExtendedDataTest, DataComeBackAsTheyWereRead) {
  const QString cases[][2] = {
      {"<Data name=\"a\"><value>1</value></Data><Data name=\"b\"></Data>", QString()},
      {"<Data name=\"a\"><displayName><![CDATA[<b>A</b>]]></displayName>"
       "<value><![CDATA[<i>1</i>]]></value></Data>",
       QString()},
      {"<Data name='a' id='d' x='1'>text</Data>",
       "<Data name=\"a\" id=\"d\" x=\"1\"><value>text</value></Data>"},
      {"<Data><unknown>1</unknown></Data>", QString()},
      {"<SchemaData schemaUrl=\"#nowhere\"><SimpleData name=\"a\">1 &amp; 2</SimpleData>"
       "<SimpleData name=\"b\"></SimpleData></SchemaData>",
       QString()},
      {"<gx:ArrayData kml:name=\"a\"><gx:value>1</gx:value><gx:value/><gx:value>3</gx:value>"
       "</gx:ArrayData>",
       QString()},
      {"<SchemaData><gx:SimpleArrayData name='a'><gx:value/></gx:SimpleArrayData></SchemaData>",
       "<SchemaData><gx:SimpleArrayData kml:name=\"a\"><gx:value/></gx:SimpleArrayData>"
       "</SchemaData>"},
      {"<other xmlns=\"http://example.com/n\"><deep a=\"1\">2</deep></other>", QString()},
      {"", QString()},
  };
  for (const auto& [data, written] : cases) {
    SCOPED_TRACE(data.toStdString());
    const auto placemark = Read<Placemark>(
        InPlacemark(data).replace("xmlns:gx", "xmlns:kml=\"http://www.vorrel.com/kml/2.2\" "
                                              "xmlns=\"http://www.vorrel.com/kml/2.2\" xmlns:gx"));
    ASSERT_TRUE(placemark);
    const QString text = Write(*placemark);
    const QString bare = QString(text).remove('\n').remove('\t');
    EXPECT_TRUE(bare.contains(written.isNull() ? data : written)) << bare.toStdString();
    EXPECT_EQ(text, Write(*ReadObject(text)));
    EXPECT_EQ(text, Write(*placemark->clone(true, nullptr)).remove(GetDocumentUrl()));
  }
}

TEST_F(ExtendedDataTest, ValuesHaveTheTypesOfTheSchemaWheneverThatComes) {
  const QString schema = "<Schema name=\"Trail\" id=\"s\">"
                         "<SimpleField type=\"int\" name=\"count\"><displayName>Count of all"
                         "</displayName></SimpleField><SimpleField type=\"string\" name=\"head\"/>"
                         "<gx:SimpleArrayField type=\"float\" name=\"pulse\"/></Schema>";
  const QString data = "<SchemaData schemaUrl=\"#s\"><SimpleData name=\"count\">12</SimpleData>"
                       "<SimpleData name=\"head\">B</SimpleData><SimpleData name=\"odd\">1"
                       "</SimpleData><gx:SimpleArrayData name=\"pulse\"><gx:value>1</gx:value>"
                       "<gx:value/><gx:value>2</gx:value></gx:SimpleArrayData></SchemaData>";
  const QString placed[] = {InDocument(schema, data), InDocument("", data, schema)};
  for (const QString& text : placed) {
    SCOPED_TRACE(text.toStdString());
    const auto document = Read<Document>(text);
    const auto values = SchemaDataOf();
    ASSERT_TRUE(values && values->GetSchema());
    EXPECT_EQ("Trail", values->GetName());
    EXPECT_EQ("count=12 head=B pulse=1,1.5,2", ValuesOf(values->GetCustomObject()));
    EXPECT_EQ("Count of all", values->FindSimpleData("count")->GetDisplayName());
    EXPECT_EQ(nullptr, values->FindSimpleData("odd")->GetCustomField());
    EXPECT_EQ(QString(), values->FindSimpleData("odd")->GetDisplayName());
    EXPECT_EQ("1", values->FindSimpleData("odd")->GetValue());
    const QString first = Write(*document);
    EXPECT_EQ(first, Write(*ReadObject(first)));

    // The instance follows what becomes of the values.
    const RefPtr<SimpleData> count(values->FindSimpleData("count"));
    const RefPtr<SchemaObject> object(values->GetCustomObject());
    count->SetValue("many");
    EXPECT_EQ("many", count->GetValue());
    EXPECT_EQ(0, GetTypedValueFromSimpleData<int>(*count));
    EXPECT_EQ("count=0 head=B pulse=1,1.5,2", ValuesOf(object.get()));
    count->SetName("head");
    EXPECT_EQ("count=0 head=many pulse=1,1.5,2", ValuesOf(values->GetCustomObject()));
    values->SetSchemaUrl(QString());
    EXPECT_EQ(nullptr, values->GetCustomObject());
    EXPECT_EQ(nullptr, count->GetCustomField());
  }
}

TEST_F(ExtendedDataTest, ASchemaOfAnotherDocumentArrivesWithAMergeOfAThread) {
  const auto placemark = Read<Placemark>(InPlacemark(
      "<SchemaData schemaUrl=\"types.kml#s\"><SimpleData name=\"n\">7</SimpleData></SchemaData>"));
  const auto data = placemark->GetExtendedData()->GetSchemaDatas()[0];
  EXPECT_EQ(nullptr, data->GetSchema());
  RefPtr<SchemaObject> types;
  {
    Workers workers(1, [&](int) {
      types = ReadAt("http://example.com/dir/types.kml",
                     "<Document><Schema name=\"T\" id=\"s\"><SimpleField type=\"double\" "
                     "name=\"n\"/></Schema></Document>");
    });
    workers.Finish();
    EXPECT_EQ(nullptr, data->GetSchema());
  }
  EXPECT_EQ("n=7", ValuesOf(data->GetCustomObject()));
  EXPECT_TRUE(Write(*placemark).contains("schemaUrl=\"types.kml#s\""));
  types.reset();
  EXPECT_EQ("n=7", ValuesOf(data->GetCustomObject())) << "who refers to a schema keeps it";
}

TEST_F(ExtendedDataTest, GapsBetweenNumbersAreFilledForThoseWhoAsk) {
  struct Case {
    const char* type; // of the declaration; empty for data without one
    const char* values;
    const char* filled;
  };
  const Case cases[] = {
      {"", "1 - 3", "1 2 3"},
      {"", "1 - - - 2", "1 1.25 1.5 1.75 2"},
      {"", "- - 5 - 7 -", "5 5 5 6 7 7"},
      {"", "- 5 -", "- 5 -"},
      {"", "- -", "- -"},
      {"", "1 - x", "1 - x"},
      {"", "1e300 - 3e300", "1e300 2e+300 3e300"},
      {"", "0.1 - 0.3", "0.1 0.2 0.3"},
      {"", "1 2 3", "1 2 3"},
      {"int", "1 - 4", "1 2.5 4"},
      {"int", "1 - x", "1 - x"},
      {"string", "1 - 3", "1 - 3"},
      {"bool", "1 - 1", "1 - 1"},
      {"Vec2", "1 - 1", "1 - 1"},
      {"nothing", "1 - 3", "1 2 3"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.values);
    QString values;
    for (const QString& value : QString(c.values).split(' '))
      values += value == "-" ? "<gx:value/>" : "<gx:value>" + value + "</gx:value>";
    const bool isTyped = *c.type != '\0';
    const QString data = isTyped ? "<SchemaData schemaUrl=\"#s\"><gx:SimpleArrayData name=\"a\">" +
                                       values + "</gx:SimpleArrayData></SchemaData>"
                                 : "<gx:ArrayData name=\"a\">" + values + "</gx:ArrayData>";
    const auto document = Read<Document>(InDocument(
        QStringLiteral("<Schema id=\"s\"><gx:SimpleArrayField name=\"a\" type=\"%1\"/></Schema>")
            .arg(c.type),
        data));
    const QString text = Write(*document);
    const ExtendedData* const read = DataOf();
    QStringList filled;
    for (int i = 0, end = QString(c.values).split(' ').size(); i < end; ++i) {
      const QString value = isTyped ? SchemaDataOf()->GetSimpleArrayDatas()[0]->GetIndexedValue(i)
                                    : read->GetArrayDatas()[0]->GetIndexedValue(i);
      filled += value.isEmpty() ? "-" : value;
    }
    EXPECT_EQ(c.filled, filled.join(' '));
    EXPECT_EQ(text, Write(*document)) << "what fills a gap isn't written";
  }
}

TEST_F(ExtendedDataTest, AGapOfAnyLengthIsFilledInOneWalk) {
  // Longer than any walk to its end for each entry could be.
  for (const bool isAtEnd : {false, true}) {
    mmvector<bool> undefined(1000000, true);
    undefined[0] = undefined[1] = false;
    undefined.back() = isAtEnd;
    std::size_t filled = 0;
    EXPECT_TRUE(CleanArray(undefined, 1000000, [&](int, int low, int high) {
      filled += low == (isAtEnd ? 0 : 1) && high == (isAtEnd ? 1 : 999999) ? 1 : 0;
    }));
    EXPECT_EQ(isAtEnd ? 999998U : 999997U, filled);
  }
}

TEST_F(ExtendedDataTest, EntitiesOfTextsLeadToValues) {
  const auto document = Read<Document>(InDocument(
      "<Schema name=\"T\" id=\"s\"/>",
      "<Data name=\"a\"><value>1</value></Data><Data name=\"a\"><value>2</value></Data>"
      "<SchemaData schemaUrl=\"#s\"><SimpleData name=\"b\">3</SimpleData></SchemaData>"));
  const QString cases[][2] = {{"$[a]", "1"},        {"$[T/b]", "3"},     {"$[b]", "$[b]"},
                              {"$[T/a]", "$[T/a]"}, {"$[/b]", "$[/b]"},  {"$[T/b/]", "$[T/b/]"},
                              {"$[A]", "$[A]"},     {"$[a]$[T/b]", "13"}};
  auto* const placemark = static_cast<Placemark*>(SchemaObject::find(GetDocumentUrl(), "p"));
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(expected, placemark->ApplyEntityReplacement(text)) << text.toStdString();
}

TEST_F(ExtendedDataTest, EachSchemaGoesOutOnceWhereAllThatNeedItCanReachIt) {
  const auto item = [](const QString& name) {
    return QStringLiteral("<Placemark id=\"%1\"><ExtendedData><SchemaData schemaUrl=\"#s\">"
                          "<SimpleData name=\"n\">1</SimpleData></SchemaData></ExtendedData>"
                          "</Placemark>")
        .arg(name);
  };
  const QString schema = "<Schema name=\"T\" id=\"s\"><SimpleField type=\"int\" name=\"n\"/>"
                         "</Schema>";
  const QString texts[] = {
      "<Document>" + schema + item("p") + "<Document>" + item("q") + "</Document></Document>",
      "<Document>" + item("p") + "<Document>" + schema + item("q") + "</Document></Document>",
      "<Document><Document>" + item("p") + "</Document><Document>" + schema + item("q") +
          "</Document></Document>",
      "<Document>" + schema + "<Style id=\"s2\"/>" + item("p") + item("q") + "</Document>",
      "<Document><Schema name=\"unused\"/>" + schema + item("p") + item("q") + "</Document>",
  };
  for (const QString& text : texts) {
    SCOPED_TRACE(text.toStdString());
    const auto document = Read<Document>(text);
    const QString written = Write(*document);
    EXPECT_EQ(text.count("<Schema "), written.count("<Schema "));
    EXPECT_EQ(2, written.count("schemaUrl=\"#s\""));
    const auto again = Read<Document>(written);
    for (const char* id : {"p", "q"})
      EXPECT_EQ("n=1", ValuesOf(SchemaDataOf(id)->GetCustomObject()));
    EXPECT_EQ(written, Write(*again));
    // A part of it takes the schema along.
    const auto part = ReadObject(Write(*SchemaObject::find(GetDocumentUrl(), "q")));
    EXPECT_EQ("n=1", ValuesOf(SchemaDataOf("q")->GetCustomObject()));
  }
  // In another document a schema whose id is taken gets one of its own.
  const auto mine = Read<Document>("<Document>" + schema + item("p") + "</Document>");
  const auto other = ReadAt("runtime://other", "<Document><Schema name=\"U\" id=\"s\"><SimpleField "
                                               "type=\"double\" name=\"n\"/></Schema>" +
                                                   item("o") + "</Document>");
  ASSERT_TRUE(mine->AddChild(*static_cast<Document&>(*other).GetChild(0)));
  const auto both = Read<Document>(Write(*mine));
  EXPECT_EQ("T", SchemaDataOf("p")->GetName());
  EXPECT_EQ("U", SchemaDataOf("o")->GetName());
}

TEST_F(ExtendedDataTest, UpdatesChangeValuesAndTakeThemBack) {
  const auto document = Read<Document>(InDocument(
      "<Schema name=\"T\" id=\"s\"><SimpleField type=\"int\" name=\"n\"/></Schema>",
      "<Data name=\"a\" id=\"a\"><value>1</value></Data><SchemaData schemaUrl=\"#s\" id=\"d\">"
      "<SimpleData name=\"n\" id=\"n\">3</SimpleData></SchemaData>"));
  const QString before = Write(*document);
  const RefPtr<SchemaObject> object(SchemaDataOf()->GetCustomObject());
  const auto update = MakeUpdate("<Change><Data targetId=\"a\"><value>2</value></Data>"
                                 "<SimpleData targetId=\"n\">4</SimpleData></Change>");
  update->SetKeepEdits(true);
  update->Apply(nullptr, 1.0F);
  EXPECT_EQ("n=4", ValuesOf(object.get()));
  EXPECT_EQ("2", DataOf()->FindData("a")->GetValue());
  update->ApplyEdits(0.0F);
  EXPECT_EQ("n=3", ValuesOf(object.get()));
  EXPECT_EQ(before, Write(*document));
  EXPECT_EQ(QStringList(),
            Apply("<Create><SchemaData targetId=\"d\"><SimpleData name=\"n\">9</SimpleData>"
                  "</SchemaData></Create>"));
  EXPECT_EQ("n=9", ValuesOf(SchemaDataOf()->GetCustomObject())) << "the last one of a name counts";
}

} // namespace vorrel::kestan
