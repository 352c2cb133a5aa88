#include "tests/support/rebinding.h"
#include "kestan/feature/abstractfeature.h"
#include "tests/read/readtest.h"
#include "tests/support/xml.h"

#include <random>

namespace vorrel::kestan {

namespace {

using RebindingTest = ReadTest;

TEST_F(RebindingTest, NamesKeepTheirMeaningHoweverPrefixesAreBound) {
  std::mt19937 random(1);
  const Choose choose = [&random](unsigned count) { return unsigned(random() % count); };
  for (int i = 0; i < 1000 && !HasFailure(); ++i) {
    const QByteArray document = MakeRebindingDocument(choose);
    ASSERT_EQ(QString(), FindXmlError(document)) << document.constData();
    // A second round gives the same, byte for byte.
    const QString written = RoundTrip(document);
    EXPECT_EQ(GetForeignNames(document).join("\n"), GetForeignNames(written.toUtf8()).join("\n"))
        << document.constData() << "\n\n"
        << written.toStdString();
  }
}

TEST_F(RebindingTest, AMeaningThatTheRootCannotGiveStandsWhereItIsNeeded) {
  struct Case {
    const char* what;
    const char* document;
    const char* written; ///< Stands somewhere in the output.
  };
  const Case cases[] = {
      {"root content against a feature's standard prefix",
       "<kml xmlns:gx='urn:1' gx:u='1'><Folder xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>"
       "<gx:w/></Folder></kml>",
       "<gx:w></gx:w>"},
      {"a standard prefix of the root against a feature's",
       "<kml xmlns='http://www.opengis.net/kml/2.2' "
       "xmlns:gx='http://www.vorrel.com/kml/ext/2.2'><foo gx:a='1'/>"
       "<Placemark xmlns:gx='urn:1' b='2'/></kml>",
       "<foo gx:a=\"1\"></foo>"},
      {"bound anew and back",
       "<kml xmlns:k='urn:1' a='1'><Document><Placemark xmlns:k='urn:2'>"
       "<k:foo xmlns:k='urn:1'/></Placemark></Document></kml>",
       "\t<k:foo></k:foo>"},
      {"a value that uses a prefix of the object's element",
       "<Folder xmlns:x='urn:a' x:t='1'><Placemark xmlns:x='urn:b' t='x:B'/></Folder>",
       "<Placemark t=\"x:B\" xmlns:x=\"urn:b\">"},
      {"an element of ours with such a prefix, inside",
       "<Folder xmlns:gx='urn:a' gx:t='1' xmlns:e='http://www.vorrel.com/kml/ext/2.2'>"
       "<e:balloonVisibility>1</e:balloonVisibility></Folder>",
       "<gx:balloonVisibility xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\">1"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const QString written = RoundTrip(c.document);
    EXPECT_TRUE(written.contains(c.written)) << written.toStdString();
  }
}

TEST_F(RebindingTest, WhatTheRootSaysBesideItsFeatureIsKept) {
  const QString written = RoundTrip("<kml xmlns:x='urn:1' b='1' x:c='2' id2='3'>"
                                    "<Placemark xmlns:x='urn:2' b='4' x:c='5'/></kml>");
  EXPECT_TRUE(written.contains("<Placemark id2=\"3\" b=\"4\" x:c=\"5\">")) << written.toStdString();
  EXPECT_TRUE(written.contains("<kml b=\"1\" x:c=\"2\" xmlns:x=\"urn:1\"></kml>"))
      << written.toStdString();
}

TEST_F(RebindingTest, AttributesOfAnElementThatStandsForAnAttributeOverwriteNothing) {
  struct Case {
    const char* content;
    const char* written;
  };
  const Case cases[] = {
      {"<id kml:id='z' xmlns:kml='http://www.opengis.net/kml/2.2'>q</id>", "<Placemark id=\"q\">"},
      {"<id id='z'></id>", "<Placemark>"},
      {"<id a='1' id='z'>q</id>", "<Placemark id=\"q\" a=\"1\">"},
      {"<Snippet><maxLines maxLines='5' q='4'>3</maxLines>a</Snippet>",
       "<Snippet maxLines=\"3\" q=\"4\">a</Snippet>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    const QString written = RoundTrip(QByteArray("<Placemark>") + c.content + "</Placemark>");
    EXPECT_TRUE(written.contains(c.written)) << written.toStdString();
  }
}

} // namespace

} // namespace vorrel::kestan
