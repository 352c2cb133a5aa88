#include "kestan/core/schema.h"
#include "tests/read/readtest.h"
#include "tests/support/xml.h"

namespace vorrel::kestan {

namespace {

using UnknownContentTest = ReadTest;

/// What the object's preserved content declares, as "prefix=uri" items.
QStringList Declarations(const SchemaObject& object) {
  QStringList list;
  for (const auto& entry : object.GetUnknownData()->namespaces)
    list += entry->prefix + "=" + entry->uri;
  return list;
}

TEST_F(UnknownContentTest, ElementsAreKeptWhole) {
  const std::pair<const char*, const char*> cases[] = {
      {"<foo a='1'>x<bar/> y</foo> <baz/>", "<foo a=\"1\">x<bar></bar> y</foo><baz></baz>"},
      {" a &lt; b <foo/>", "a <![CDATA[<]]> b<foo></foo>"},
      {"<foo>a &amp; b</foo>", "<foo>a <![CDATA[&]]> b</foo>"},
      {"<foo>&amp;&amp;</foo>", "<foo><![CDATA[&]]><![CDATA[&]]></foo>"},
      {"<foo><![CDATA[<b>x & y</b>]]></foo>", "<foo><![CDATA[<b>x & y</b>]]></foo>"},
      {"<foo><![CDATA[plain]]></foo>", "<foo>plain</foo>"},
      {"<foo>]]&gt;</foo>", "<foo>]]&gt;</foo>"},
      {"<foo>]]<![CDATA[>]]></foo>", "<foo>]]<![CDATA[>]]></foo>"},
      {"<foo>]<![CDATA[]>]]></foo>", "<foo>]<![CDATA[]>]]></foo>"},
      {"<foo><![CDATA[&]]]]><![CDATA[>]]></foo>", "<foo><![CDATA[&]]]]>></foo>"},
      {"<foo>a&#13;b</foo>", "<foo>a&#13;b</foo>"},
      {"<foo a='&#9;&#10;&#13;&lt;&gt;&amp;&quot;&apos;'/>",
       "<foo a=\"&#9;&#10;&#13;&lt;&gt;&amp;&quot;&apos;\"></foo>"},
      {"<f\xC3\xBC\xC3\xBC \xC3\xA4='\xE4\xB8\xAD'>\xF0\x9F\x8C\x8D</f\xC3\xBC\xC3\xBC>",
       "<f\xC3\xBC\xC3\xBC \xC3\xA4=\"\xE4\xB8\xAD\">\xF0\x9F\x8C\x8D</f\xC3\xBC\xC3\xBC>"},
      {"<\xE3\x80\x87\xCE\x87 \xE2\x86\x80='1'>t</\xE3\x80\x87\xCE\x87>",
       "<\xE3\x80\x87\xCE\x87 \xE2\x86\x80=\"1\">t</\xE3\x80\x87\xCE\x87>"},
      {"<foo><Placemark><name>not read</name></Placemark></foo>",
       "<foo><Placemark><name>not read</name></Placemark></foo>"},
  };
  for (const auto& [content, kept] : cases) {
    SCOPED_TRACE(content);
    EXPECT_EQ(QString::fromUtf8(kept), Keep(QString::fromUtf8(content)));
  }
}

TEST_F(UnknownContentTest, ASectionIsKeptWhereverTheTextBufferHasToGrow) {
  for (int length = 990; length < 1030; ++length) {
    SCOPED_TRACE(length);
    const QString section = "<![CDATA[<" + QString(length, 'x') + "]]>";
    const auto object = ReadObject("<Placemark><foo>" + section + "</foo></Placemark>");
    ASSERT_TRUE(object);
    EXPECT_TRUE(Write(*object).contains("<foo>" + section + "</foo>"));
  }
}

TEST_F(UnknownContentTest, AttributesAreEscapedOnceAndKeepEveryCharacter) {
  const QString written =
      RoundTrip("<Placemark a='1' \xC3\xA4='&lt;&amp;&#9;&#10;&#13;\xF0\x9F\x8C\x8D'>"
                "<name b='&quot;'>n</name></Placemark>");
  EXPECT_TRUE(written.contains(
      QString::fromUtf8(" a=\"1\" \xC3\xA4=\"&lt;&amp;&#9;&#10;&#13;\xF0\x9F\x8C\x8D\">")));
  EXPECT_TRUE(written.contains("<name b=\"&quot;\">n</name>"));
  const char* const list = "<gx:hiddenEdgeList a=\"1\">1 2";
  EXPECT_TRUE(RoundTrip(QByteArray("<LinearRing xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>") +
                        list + "</gx:hiddenEdgeList></LinearRing>")
                  .contains(list));
}

TEST_F(UnknownContentTest, DeclarationsInScopeTravelWithTheContent) {
  struct Case {
    const char* root;
    const char* attributes;
    const char* content;
    const char* declarations;
    const char* fields;
  };
  const Case cases[] = {
      {"xmlns:f='urn:f'", "", "<f:a/>", "f=urn:f", "<f:a></f:a>"},
      {"", "xmlns:f='urn:f' f:b='1'", "", "f=urn:f", ""},
      {"", "", "<f:a xmlns:f='urn:f'/>", "f=urn:f", "<f:a></f:a>"},
      {"", "", "<name xmlns:f='urn:f' f:b='1'>n</name><g:a xmlns:g='urn:g'/>", "f=urn:f g=urn:g",
       "<g:a></g:a>"},
      {"xmlns:xsi='urn:i'", "xmlns:f='urn:f'", "<a/>", "xsi=urn:i f=urn:f", "<a></a>"},
      // Recognised ones: listed under another prefix than the root's, with the URI written there.
      {"xmlns:k='http://www.vorrel.com/kml/2.1'", "", "<k:a/>", "k=http://www.opengis.net/kml/2.2",
       "<k:a></k:a>"},
      {"xmlns:gx='http://www.vorrel.com/kml/ext/2.2' xmlns:atom='http://www.w3.org/2005/Atom'", "",
       "<gx:a/>", "", "<gx:a></gx:a>"},
      {"xmlns:xal='urn:oasis:names:tc:ciq:xsdschema:xAL:2.0'", "", "<xal:a/>",
       "xal=urn:oasis:names:tc:ciq:xsdschema:xAL:2.0", "<xal:a></xal:a>"},
      // The content of an address block keeps its own declarations.
      {"", "", "<xal:a xmlns:xal='urn:oasis:names:tc:ciq:xsdschema:xAL:2.0'/>", "",
       "<xal:a xmlns:xal=\"urn:oasis:names:tc:ciq:xsdschema:xAL:2.0\"></xal:a>"},
      // A default namespace stands on the element that needs it.
      {"", "", "<a xmlns='http://www.vorrel.com/kml/ext/2.1'/>", "",
       "<a xmlns=\"http://www.vorrel.com/kml/ext/2.2\"></a>"},
      {"", "", "<a xmlns=''/>", "", "<a></a>"},
      // One prefix with two meanings: the inner one stands on its element.
      {"xmlns:f='urn:f'", "", "<f:a/><f:b xmlns:f='urn:2'/><f:c/>", "f=urn:f",
       "<f:a></f:a><f:b xmlns:f=\"urn:2\"></f:b><f:c></f:c>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.root) + " " + c.attributes + " " + c.content);
    const QString text = InPlacemark(c.content, c.root, c.attributes);
    const auto placemark = Read<Placemark>(text);
    ASSERT_TRUE(placemark && placemark->HasUnknownData());
    EXPECT_EQ(c.declarations, Declarations(*placemark).join(' '));
    EXPECT_EQ(c.fields, placemark->GetUnknownData()->fields);
    // The names mean the same in the written document.
    RoundTrip(text.toUtf8());
  }
}

TEST_F(UnknownContentTest, ContentOfAFieldElementStaysInOne) {
  const QString written =
      RoundTrip("<Placemark><Polygon><outerBoundaryIs a='1'>lost <x/>"
                "<tessellate>1</tessellate><LinearRing><coordinates>1,2 3,4 5,7"
                "</coordinates></LinearRing></outerBoundaryIs></Polygon></Placemark>");
  EXPECT_TRUE(written.contains("<outerBoundaryIs>lost<x></x></outerBoundaryIs>"
                               "<outerBoundaryIs><tessellate>1</tessellate></outerBoundaryIs>"));
  EXPECT_TRUE(written.contains("<outerBoundaryIs a=\"1\">"));
}

TEST_F(UnknownContentTest, AnObjectWithTextKeepsItBesideUnknownElements) {
  const QString written =
      RoundTrip("<Placemark><Snippet maxLines='1'>one<x/> two</Snippet></Placemark>");
  EXPECT_EQ(QStringLiteral("<Snippet maxLines=\"1\">one two<x></x>\n</Snippet>"),
            Element(written, "Snippet"));
}

TEST_F(UnknownContentTest, WhatTheRootCannotHoldGoesToItsFeature) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"<kml f:a='1' creator='me' xmlns:f='urn:f'><Placemark b='2'/></kml>",
       " f:a=\"1\" creator=\"me\" b=\"2\"", ""},
      {"<kml creator='me' b='1'><Placemark b='2'/></kml>", " creator=\"me\" b=\"2\"",
       "<kml b=\"1\"></kml>"},
      {"<kml xmlns:f='urn:1' f:a='1'><Placemark xmlns:f='urn:2' "
       "f:a='2'><f:x/></Placemark><f:y/></kml>",
       " f:a=\"2\"",
       "<kml xmlns:f=\"urn:1\" f:a=\"1\"></kml><f:y xmlns:f=\"urn:1\"></f:y><f:x></f:x>"},
      {"<kml><x/><Placemark><y/></Placemark>t &lt;<z/></kml>", "",
       "<x></x>t <![CDATA[<]]><z></z><y></y>"},
      // Inside the feature this would be its name.
      {"<kml><name>n</name><x/><Placemark/></kml>", "", "<kml><name>n</name></kml><x></x>"},
  };
  for (const auto& [text, attributes, fields] : cases) {
    SCOPED_TRACE(text);
    const auto placemark = Read<Placemark>(text);
    ASSERT_TRUE(placemark && placemark->HasUnknownData());
    EXPECT_EQ(attributes, placemark->GetUnknownData()->attrs);
    EXPECT_EQ(fields, placemark->GetUnknownData()->fields);
    RoundTrip(text);
  }
}

TEST_F(UnknownContentTest, NothingIsKeptWhereUnknownContentIsDropped) {
  const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
  const Parse parse(
      "<kml a='1'><x/><Placemark b='2' f:c='3'><y>t</y><name>m</name><name>n</name></Placemark>"
      "</kml>",
      3, recorder.get());
  EXPECT_TRUE(recorder->reports.empty());
  ASSERT_TRUE(parse.object);
  EXPECT_FALSE(parse.object->HasUnknownData());
  EXPECT_TRUE(Write(*parse.object).contains("<Placemark>\n\t<name>n</name>\n</Placemark>"));
}

} // namespace

} // namespace vorrel::kestan
