#include "tests/support/kmltest.h"
#include "tests/support/xml.h"

namespace vorrel::kestan {

/// Documents whose foreign content needs care with prefixes. The first write must be well-formed
/// for a parser with namespaces, and a fixed point.
class NamespaceTest : public KmlTest {
protected:
  static QString Kml(const char* declarations, const char* content) {
    return QString(
               "<kml xmlns=\"http://www.opengis.net/kml/2.2\" %1><Placemark>%2</Placemark></kml>")
        .arg(declarations, content);
  }
};

TEST_F(NamespaceTest, ForeignContentKeepsItsMeaning) {
  struct Case {
    const char* what;
    const char* declarations;
    const char* content;
    const char* written; ///< Stands somewhere in the output.
  };
  const Case cases[] = {
      {"a standard prefix for another URI", "xmlns:gx=\"urn:other\"",
       "<gx:a gx:b=\"1\"><c/></gx:a>", "<gx:a gx:b=\"1\" xmlns:gx=\"urn:other\"><c></c></gx:a>"},
      {"such a prefix on an attribute of typed content", "xmlns:atom=\"urn:other\"",
       "<name atom:b=\"1\">n</name>", "<name atom:b=\"1\" xmlns:atom=\"urn:other\">n</name>"},
      {"such a prefix that the tag itself needs",
       "xmlns:ns0=\"urn:1\" xmlns:gx=\"urn:2\" xmlns:e=\"http://www.vorrel.com/kml/ext/2.2\"",
       "<e:balloonVisibility gx:b=\"1\">1</e:balloonVisibility>",
       "<gx:balloonVisibility ns1:b=\"1\">1</gx:balloonVisibility>"},
      {"another prefix has the URI",
       "xmlns:q=\"urn:2\" xmlns:gx=\"urn:2\" xmlns:e=\"http://www.vorrel.com/kml/ext/2.2\"",
       "<e:balloonVisibility gx:b=\"1\">1</e:balloonVisibility>",
       "<gx:balloonVisibility q:b=\"1\">1</gx:balloonVisibility>"},
      {"KML under another prefix", "xmlns:k=\"http://www.opengis.net/kml/2.2\"",
       "<k:name>n</k:name><k:unheard k:of=\"1\"/>", "<k:unheard k:of=\"1\"></k:unheard>"},
      {"several of them on one element", "xmlns:gx=\"urn:1\" xmlns:atom=\"urn:2\"",
       "<gx:a b=\"1\" atom:c=\"2\"/><q:d xmlns:q=\"urn:3\"/><gx:e xmlns:q=\"urn:4\" q:f=\"1\"/>",
       "<gx:a b=\"1\" atom:c=\"2\" xmlns:atom=\"urn:2\" xmlns:gx=\"urn:1\"></gx:a>"},
      {"a standard prefix that gets its meaning back", "xmlns:atom=\"urn:other\"",
       "<atom:a xmlns:atom=\"http://www.w3.org/2005/Atom\"/>", "<atom:a></atom:a>"},
      {"a default taken back", "", "<a xmlns=\"urn:d\"><b xmlns=\"\"/></a>", "<b xmlns=\"\"></b>"},
      {"a schema location",
       "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:schemaLocation=\"a b\"",
       "<name>n</name>", "xsi:schemaLocation=\"a b\""},
      {"a language", "", "<a xml:lang=\"de\">x</a>", "<a xml:lang=\"de\">x</a>"},
      {"declared nowhere", "", "<foo:a foo:b=\"1\"/>", "xmlns:foo=\"urn:undeclared:foo\""},
      {"a known prefix declared nowhere", "", "<a xlink:href=\"b\"/>",
       "xmlns:xlink=\"http://www.w3.org/1999/xlink\""},
      {"a URI with special characters", "xmlns:p=\"urn:p?a=1&amp;b=&quot;\"", "<p:a/>",
       "xmlns:p=\"urn:p?a=1&amp;b=&quot;\""},
      {"an attribute twice under two prefixes", "xmlns:p=\"urn:1\" xmlns:q=\"urn:1\"",
       "<a p:b=\"1\" q:b=\"2\"/>", "<a p:b=\"1\"></a>"},
      {"a name with two colons", "xmlns:p=\"urn:1\"", "<p:a:b/>", "<p:a_b></p:a_b>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const QString written = RoundTrip(Kml(c.declarations, c.content));
    EXPECT_TRUE(written.contains(c.written)) << written.toStdString();
  }
}

TEST_F(NamespaceTest, ContentThatNeedsNoCareComesOutTheSame) {
  const QString document = Kml(
      "xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\" xmlns:p=\"urn:p\" xmlns:q=\"urn:q\"",
      "<name p:x=\"&lt;1&#10;\">n</name><q:a r:b=\"2\" xmlns:r=\"urn:r\">t &amp; u<p:c/></q:a>");
  const QString content = RoundTrip(document);
  // Apart from indentation.
  const QString canonical = Canonical(content.toUtf8().replace("\n", "").replace("\t", ""));
  EXPECT_FALSE(canonical.isNull());
  EXPECT_EQ(Canonical(document.toUtf8()), canonical);
}

} // namespace vorrel::kestan
