#include "tests/read/readtest.h"

namespace vorrel::kestan {

namespace {

using DocumentTest = ReadTest;

TEST_F(DocumentTest, TextIsTrimmedAndOnlyTheRunBeforeAnEndTagCounts) {
  const QString cases[][2] = {{" a\n", "a"},
                              {"\t&#160;a b&#13;", "a b"},
                              {" ", QString()},
                              {"<![CDATA[<i>]]>", "<i>"},
                              {"a</name><name>b", "b"}};
  for (const auto& [text, name] : cases) {
    const auto placemark = Read<Placemark>("<Placemark><name>" + text + "</name></Placemark>");
    EXPECT_EQ(name, placemark->GetName());
    EXPECT_EQ(name.isNull(), placemark->GetName().isNull());
  }
}

TEST_F(DocumentTest, ElementsInsideAValueBecomePartOfIt) {
  const auto placemark =
      Read<Placemark>("<Placemark><description>a <b c='&lt;&#10;'>x &amp; y</b> b"
                      "</description></Placemark>");
  EXPECT_EQ("a<b c=\"&lt;&#10;\">x <![CDATA[&]]> y</b> b", placemark->GetDescription());
  RoundTrip("<Placemark><description>a <b>x &amp; ]]&gt; y</b> b</description></Placemark>");
  RoundTrip("<Placemark><name>a <b>x &amp; ]]&gt; y</b> b</name></Placemark>");
}

TEST_F(DocumentTest, DeclarationsInsideAValueStayInItsText) {
  EXPECT_EQ("<p xmlns=\"http://www.w3.org/1999/xhtml\"><f:b xmlns:f=\"urn:f\"></f:b></p>",
            Read<Placemark>("<Placemark xmlns='http://www.opengis.net/kml/2.2'><description>"
                            "<p xmlns='http://www.w3.org/1999/xhtml'><f:b xmlns:f='urn:f'/></p>"
                            "</description></Placemark>")
                ->GetDescription());
}

TEST_F(DocumentTest, OfAKmlRootTheFeatureIsReturned) {
  const Parse parse("<kml hint='target=sky'><Placemark id='p'/></kml>", 0);
  ASSERT_TRUE(parse.object);
  EXPECT_TRUE(parse.object->isOfType("Placemark"));
  EXPECT_TRUE(parse.handler.GetRoot()->isOfType("kml"));
  EXPECT_EQ(parse.handler.GetRoot()->GetHintTarget(), parse.object->GetHintTarget());
  EXPECT_NE(0xFFFFU, parse.object->GetHintTarget());

  const Parse empty("<kml/>", 0);
  EXPECT_FALSE(empty.object);
  EXPECT_TRUE(empty.handler.GetRoot());
  EXPECT_EQ(QString(), empty.handler.GetErrorText());
}

TEST_F(DocumentTest, AnObjectThatIsNoFeatureComesBackFromItsKmlRoot) {
  const QString polygon =
      RoundTrip("<Polygon id='p' xmlns:f='urn:f' f:a='1'><f:x/><outerBoundaryIs>"
                "<LinearRing><coordinates>1,2 3,4 5,7 1,2</coordinates>"
                "</LinearRing></outerBoundaryIs></Polygon>");
  EXPECT_EQ(1, polygon.count("<Polygon"));
  EXPECT_TRUE(RoundTrip("<kml xmlns:f='urn:f' f:b='1' xmlns='http://www.opengis.net/kml/2.2'>"
                        "<Point><f:y/></Point></kml>")
                  .contains("<Point f:b=\"1\">"));
  for (const char* text : {"<kml><Point/><Point/></kml>", "<kml><Geometry/></kml>",
                           "<kml><Planet/></kml>", "<kml><kml><Placemark/></kml></kml>"}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(ReadObject(QByteArray(text)));
    EXPECT_EQ(QString(), error());
  }
}

TEST_F(DocumentTest, IdsComeFromTheFirstAttributeOfThatName) {
  const std::pair<const char*, const char*> cases[] = {
      {"id='a'", "a"},
      {"k:id='b' xmlns:k='http://www.opengis.net/kml/2.2'", "b"},
      {"x:other='1' id='c'", "c"},
      {"name='n'", ""}};
  for (const auto& [attributes, id] : cases) {
    SCOPED_TRACE(attributes);
    const auto placemark = Read<Placemark>(QString("<Placemark %1/>").arg(attributes));
    EXPECT_EQ(id, placemark->GetId());
    EXPECT_EQ(*id ? placemark.get() : nullptr,
              SchemaObject::find(GetDocumentUrl(), QString::fromLatin1(id)));
  }
}

TEST_F(DocumentTest, AnIdElementNamesTheObjectAndItsAttributesJoinTheObjects) {
  const char* const text = "<Placemark id='a' c='1'><id xmlns:f='urn:f' f:d='2'>b</id></Placemark>";
  const auto placemark = Read<Placemark>(text);
  EXPECT_EQ(nullptr, SchemaObject::find(GetDocumentUrl(), "a"));
  EXPECT_EQ(placemark.get(), SchemaObject::find(GetDocumentUrl(), "b"));
  EXPECT_TRUE(RoundTrip(text).contains("<Placemark id=\"b\" c=\"1\" f:d=\"2\">"));
}

TEST_F(DocumentTest, ObjectsBelongToTheDocument) {
  KmlHandler handler("http://example.com/x/../a.kml", 7, nullptr, nullptr, nullptr);
  const auto object = Load(handler, "<Folder><Placemark id='a'/></Folder>");
  const SchemaObject* const placemark = SchemaObject::find("http://example.com/a.kml", "a");
  ASSERT_TRUE(placemark);
  EXPECT_EQ(7U, placemark->GetAccess());
  EXPECT_EQ("http://example.com/a.kml", placemark->GetBaseUrl());
}

TEST_F(DocumentTest, LongValuesArriveWhole) {
  const QString coordinates = QString("1,2,0 179,-90,0 ").repeated(15000);
  const auto line =
      ReadObject("<LineString><coordinates>" + coordinates + "</coordinates></LineString>");
  ASSERT_TRUE(line);
  EXPECT_TRUE(Write(*line).contains("<coordinates>\n\t\t" + coordinates + "\n"));
}

} // namespace

} // namespace vorrel::kestan
