#include "tests/support/rebinding.h"
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
