#include "tests/support/kmltest.h"
#include "tests/support/xml.h"

namespace vorrel::kestan {

using PreservedTest = KmlTest;

// A client can store any text; the document stays well-formed.
TEST_F(PreservedTest, TextThatIsNotWellFormedIsMended) {
  const std::pair<const char*, const char*> cases[] = {
      {"<a b='\"'/>", "<a b=\"&quot;\"></a>"},
      {"x & y &amp; &#65; &nbsp; &#0;", "x &amp; y &amp; &#65; &amp;nbsp; &amp;#0;"},
      {"a < b", "a &lt; b"},
      {"a ]]> b", "a ]]&gt; b"},
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
  for (const auto& [fields, written] : cases) {
    SCOPED_TRACE(fields);
    const auto placemark = Read<Placemark>("<Placemark/>");
    placemark->SetUnknownFields(fields, nullptr);
    const QString xml = Write(*placemark);
    EXPECT_TRUE(xml.contains(written)) << xml.toStdString();
    EXPECT_EQ(QString(), FindXmlError(xml.toUtf8())) << xml.toStdString();
  }
}

TEST_F(PreservedTest, NoAttributeStandsTwiceOnATag) {
  const std::pair<const char*, const char*> cases[] = {
      {" a=\"1\" b=\"2\"", "<Placemark id=\"p\" a=\"1\" b=\"2\">"},
      {" id=\"other\" a=\"1\"", "<Placemark id=\"p\" a=\"1\">"},
      {" a=\"1\" a=\"2\"", "<Placemark id=\"p\" a=\"1\">"},
      {" a='x&#9;<&'", "<Placemark id=\"p\" a=\"x&#9;&lt;&amp;\">"},
      {" xmlns=\"urn:d\" xmlns:p=\"urn:p\" p:a=\"1\"", "<Placemark id=\"p\" p:a=\"1\">"},
      {" a=\"1\" = b", "<Placemark id=\"p\" a=\"1\">"},
  };
  for (const auto& [attrs, written] : cases) {
    SCOPED_TRACE(attrs);
    const auto placemark = Read<Placemark>("<Placemark id=\"p\"/>");
    placemark->SetUnknownAttrs(attrs, nullptr);
    const QString xml = Write(*placemark);
    EXPECT_TRUE(xml.contains(written)) << xml.toStdString();
    EXPECT_EQ(QString(), FindXmlError(xml.toUtf8())) << xml.toStdString();
  }
}

} // namespace vorrel::kestan
