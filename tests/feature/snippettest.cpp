#include "kestan/feature/snippet.h"
#include "tests/support/fieldlog.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

using SnippetTest = KmlTest;

TEST_F(SnippetTest, BothFormsAreReadShownAndWritten) {
  struct Case {
    const char* read;
    const char* text;
    int lines;
    bool isNew;
    const char* written;    // the new form
    const char* writtenOld; // the old one
  };
  const Case cases[] = {
      {"", "", 2, false, "", ""},
      {"<snippet>a</snippet>", "a", 2, true, "<snippet>a</snippet>", ""},
      {"<snippet/>", "", 0, true, "<snippet></snippet>", ""},
      {"<Snippet>a</Snippet>", "a", 2, false, "", "<Snippet>a</Snippet>"},
      {"<Snippet maxLines=\"5\">a</Snippet>", "a", 5, false, "",
       "<Snippet maxLines=\"5\">a</Snippet>"},
      {"<Snippet maxLines=\"5\"/>", "", 0, false, "", "<Snippet maxLines=\"0\"></Snippet>"},
      {"<Snippet maxLines=\"5\">a</Snippet><snippet>b</snippet>", "b", 2, true,
       "<snippet>b</snippet>", "<Snippet>b</Snippet>"},
      {"<Snippet>a</Snippet><snippet></snippet>", "", 0, true, "<snippet></snippet>",
       "<Snippet maxLines=\"0\"></Snippet>"},
      {"<snippet>&lt;b&gt;</snippet>", "<b>", 2, true, "<snippet><![CDATA[<b>]]></snippet>", ""},
      {"<Style><ListStyle><maxSnippetLines>9</maxSnippetLines></ListStyle></Style>", "", 9, false,
       "", ""},
      {"<linkSnippet maxLines=\"1\">a</linkSnippet>", "a", 1, false, "", ""},
  };
  for (const Case& c : cases) {
    for (const char* name : {"Placemark", "Document"}) {
      SCOPED_TRACE((QByteArray(name) + c.read).constData());
      const auto feature =
          Read<AbstractFeature>(QString("<%1>%2</%1>").arg(QLatin1String(name), c.read));
      ASSERT_TRUE(feature);
      EXPECT_EQ(c.text, feature->GetSnippet());
      EXPECT_EQ(c.lines, feature->GetMaxSnippetLines());
      EXPECT_EQ(c.isNew, feature->HasNewSnippet());
      const QString written = Write(*feature);
      EXPECT_EQ(c.written, Element(written, "snippet"));
      EXPECT_EQ(c.writtenOld, Element(written, "Snippet"));
      EXPECT_EQ(QString(c.read).contains("linkSnippet"), written.contains("<linkSnippet maxLines"));
    }
  }
}

TEST_F(SnippetTest, AChangeStaysInTheFormThatTheFeatureUses) {
  auto placemark = Placemark::CreatePlacemark();
  FieldLog log(*placemark);
  placemark->SetSnippetIfExists("");
  EXPECT_EQ("", log.take());
  EXPECT_FALSE(placemark->HasNewSnippet());
  placemark->SetSnippetIfExists("a");
  EXPECT_EQ("snippet", log.take());
  EXPECT_EQ("a", placemark->GetSnippet());
  placemark->SetSnippetIfExists("");
  EXPECT_TRUE(placemark->HasNewSnippet()) << "emptied on purpose";

  placemark = Read<Placemark>("<Placemark><Snippet>old</Snippet></Placemark>");
  placemark->SetSnippetIfExists("b");
  EXPECT_FALSE(placemark->HasNewSnippet());
  EXPECT_EQ("b", placemark->GetSnippetObject()->GetText());
}

TEST_F(SnippetTest, AnUnsetSnippetStaysUnsetInACopy) {
  for (const char* content : {"", "<snippet/>", "<snippet>a</snippet>", "<Snippet>a</Snippet>"}) {
    SCOPED_TRACE(content);
    const auto source = Read<Placemark>(QString("<Placemark>%1</Placemark>").arg(content));
    EXPECT_EQ(Write(*source), Write(*source->clone(true, nullptr)));
    const auto target = Read<Placemark>("<Placemark><snippet>t</snippet></Placemark>");
    target->copy(*source, true, nullptr);
    EXPECT_EQ(source->HasNewSnippet(), target->HasNewSnippet());
    EXPECT_EQ(source->GetSnippet(), target->GetSnippet());
  }
}

} // namespace vorrel::kestan
