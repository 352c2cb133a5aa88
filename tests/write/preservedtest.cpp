#include "kestan/feature/placemark.h"
#include "tests/support/kmltest.h"
#include "tests/support/xml.h"

namespace vorrel::kestan {

using PreservedTest = KmlTest;

// A client can store any text; the document stays well-formed.
TEST_F(PreservedTest, TextThatIsNotWellFormedIsMended) {
  struct Case {
    const char* fields;
    const char* written;
  };
  const Case cases[] = {
      {"<a>x</a>", "<a>x</a>"},
      {"<a/>", "<a></a>"},
      {"<a b='\"'/>", "<a b=\"&quot;\"></a>"},
      {"x & y &amp; &#65; &nbsp; &#0;", "x &amp; y &amp; &#65; &amp;nbsp; &amp;#0;"},
      {"a < b", "a &lt; b"},
      {"a ]]> b", "a ]]&gt; b"},
      {"<a><b>x", "<a><b>x</b></a>"},
      {"<a><b>x</a>y", "<a><b>x</b></a>y"},
      {"x</a>y", "xy"},
      {"<a b=\"1\" b=\"2\" c>", "&lt;a b=\"1\" b=\"2\" c>"},
      {"<a b=\"1\" b=\"2\"/>", "<a b=\"1\"></a>"},
      {"<![CDATA[a]]><![CDATA[b", "<![CDATA[a]]>&lt;![CDATA[b"},
      {"<!-- a --><?b c?><a/>", "<a></a>"},
      {"<a xmlns:p=\"\" xmlns:xml=\"urn:x\" xmlns:=\"b\"><p:b/></a>", "<p:b></p:b>"},
      {"<xmlns:a/>", "<xmlns_a></xmlns_a>"},
      {"<a>\r<![CDATA[x\ry]]></a>", "<a>&#13;<![CDATA[x]]>&#13;<![CDATA[y]]></a>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fields);
    const auto placemark = Read<Placemark>("<Placemark/>");
    placemark->SetUnknownFields(c.fields, nullptr);
    const QString xml = Write(*placemark);
    EXPECT_TRUE(xml.contains(c.written)) << xml.toStdString();
    EXPECT_EQ(QString(), FindXmlError(xml.toUtf8())) << xml.toStdString();
  }
}

TEST_F(PreservedTest, NoAttributeStandsTwiceOnATag) {
  struct Case {
    const char* attrs;
    const char* written;
  };
  const Case cases[] = {
      {" a=\"1\" b=\"2\"", "<Placemark id=\"p\" a=\"1\" b=\"2\">"},
      {" id=\"other\" a=\"1\"", "<Placemark id=\"p\" a=\"1\">"},
      {" a=\"1\" a=\"2\"", "<Placemark id=\"p\" a=\"1\">"},
      {" a='x&#9;<&'", "<Placemark id=\"p\" a=\"x&#9;&lt;&amp;\">"},
      {" xmlns=\"urn:d\" xmlns:p=\"urn:p\" p:a=\"1\"", "<Placemark id=\"p\" p:a=\"1\">"},
      {" a=\"1\" = b", "<Placemark id=\"p\" a=\"1\">"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.attrs);
    const auto placemark = Read<Placemark>("<Placemark id=\"p\"/>");
    placemark->SetUnknownAttrs(c.attrs, nullptr);
    const QString xml = Write(*placemark);
    EXPECT_TRUE(xml.contains(c.written)) << xml.toStdString();
    EXPECT_EQ(QString(), FindXmlError(xml.toUtf8())) << xml.toStdString();
  }
}

TEST_F(PreservedTest, AttributesKeepFieldsThatWouldBeLeftOut) {
  const QStringList elements{"<open a=\"1\">0</open>", "<visibility b=\"2\">1</visibility>",
                             "<styleUrl c=\"3\"></styleUrl>", "<name d=\"4\"></name>"};
  const QString xml = RoundTrip("<Placemark>" + elements.join("") + "</Placemark>");
  for (const QString& element : elements)
    EXPECT_TRUE(xml.contains(element)) << element.toStdString() << "\n" << xml.toStdString();
}

TEST_F(PreservedTest, UnknownContentTakesItsOwnLine) {
  const auto placemark = Read<Placemark>("<Placemark a=\"1\"><foo>x</foo><name>n</name>"
                                         "<bar>y &lt; z</bar></Placemark>");
  ASSERT_TRUE(placemark);
  EXPECT_EQ("<Placemark a=\"1\">\n\t<name>n</name>\n"
            "\t<foo>x</foo><bar>y <![CDATA[<]]> z</bar>\n</Placemark>",
            Element(Write(*placemark), "Placemark"));
}

} // namespace vorrel::kestan
