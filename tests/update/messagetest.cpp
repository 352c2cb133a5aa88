#include "kestan/core/kestanoptions.h"
#include "kestan/feature/folder.h"
#include "kestan/link/networklinkcontrol.h"
#include "tests/update/updatetest.h"

namespace vorrel::kestan {

using UpdateMessageTest = UpdateTest;

TEST_F(UpdateMessageTest, WhatCantBeAppliedIsToldOnceAndTheRestGoesOn) {
  struct Case {
    const char* content;
    QStringList reports;
  };
  const Case cases[] = {
      {"<Change><Folder targetId=\"g\"><Folder targetId=\"f\"><Nonsense/></Folder></Folder>"
       "</Change>",
       {"Cannot nest <targetId> (f)"}},
      {"<Change><Folder targetId=\"none\"><Nonsense/><Placemark id=\"x\"/></Folder></Change>",
       {"Could not find <targetId> none"}},
      {"<Create><Folder targetId=\"g\"><Placemark targetIndex=\"1x\"><Nonsense/></Placemark>"
       "</Folder></Create>",
       {"Bad <targetIndex> 1x"}},
      {"<Create><Folder targetId=\"g\"><Placemark targetIdIndex=\"none\"/></Folder></Create>",
       {"Could not find <targetIdIndex> none"}},
      {"<Create><Folder targetId=\"g\"><Placemark targetIdIndex=\"f\"/></Folder></Create>",
       {"Could not find <targetIdIndex> f"}},
      {"<Change><Placemark targetId=\"g\"><Nonsense/></Placemark></Change>",
       {"Error in <Update>. Target is wrong type: actual Folder vs Placemark"}},
      {"<Change><Folder targetId=\"g\" id=\"x\"><Nonsense/></Folder></Change>",
       {"Error in <Change>. id attribute \"x\" not allowed within <Change>."}},
      {"<Change><Placemark><name>x</name><Nonsense/></Placemark></Change>",
       {"Error in <Change>. Cannot modify array element."}},
      {"<Change><Folder targetId=\"g\"><Placemark><Nonsense/></Placemark></Folder></Change>",
       {"Error in <Change>. Cannot modify array element."}},
      {"<Change><Folder targetId=\"g\"><StyleMap><Nonsense/></StyleMap></Folder></Change>",
       {"Error in <Change>. Type mismatch: Style vs StyleMap"}},
      {"<Change><Folder targetId=\"f\"><Style><Nonsense/></Style></Folder></Change>",
       {"Error in <Change>. No object of type <Style> exists to change"}},
      {"<Change><Style targetId=\"s\"><IconStyle><Icon/></IconStyle></Style></Change>",
       {"Error in <Change>. No object of type <IconStyle> exists to change"}},
      {"<Delete><Style targetId=\"s\"><Nonsense/></Style></Delete>",
       {"Error in <Delete>. Object \"s\" is not a feature"}},
      {"<Delete><Placemark><name>x</name></Placemark></Delete>",
       {"Error in <Delete> Cannot find \"\"."}},
      {"<Delete><Placemark targetId=\"p\"/><Placemark targetId=\"p\"/></Delete>",
       {"Could not find <targetId> p"}},
      {"<Delete><Folder targetId=\"g\"/></Delete><Change><Placemark targetId=\"p\"/></Change>",
       {"Could not find <targetId> p"}},
      {"<Replace><Style targetId=\"g\" id=\"n\"><Nonsense/></Style></Replace>",
       {"Error in <Replace>. New object \"n\" is not a feature."}},
      {"<Replace><Folder targetId=\"f\" id=\"n\"/></Replace>",
       {"Error in <Replace>. Object \"f\" does not have a parent."}},
      {"<Replace><Folder targetId=\"s\" id=\"n\"/></Replace>",
       {"Error in <Replace>. Object \"s\" is not a feature."}},
      {"<Replace><Folder id=\"n\"/></Replace>", {"Error in <Replace>. Cannot find \"\"."}},
      {"<Create><Folder targetId=\"g\"><Container/></Folder></Create>",
       {"Unknown element <Container>"}},
      {"<Change><Folder targetId=\"g\">stray</Folder></Change>",
       {"Unsupported data in kml object (stray)."}},
      {"<Change><Placemark "
       "targetId=\"p\"><Point><altitudeMode>up</altitudeMode></Point></Placemark>"
       "</Change>",
       {"Unknown enumeration (up)."}},
      // Targets may follow each other, at any depth.
      {"<Change><Folder targetId=\"g\"/><Placemark targetId=\"p\"/></Change><Create><Folder><Style "
       "targetId=\"s\"/><Placemark targetId=\"p\"/></Folder></Create>",
       {}},
      // Nothing is said of what isn't a block, and of what stands outside of all.
      {"<Nonsense><Folder targetId=\"none\"/></Nonsense><Folder targetId=\"g\"/><Change><Change>"
       "<Folder targetId=\"none\"/></Change><Nonsense/></Change>stray",
       {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    const auto folder = ReadObject(
        QString("<Folder id=\"f\"><Folder id=\"g\"><Style id=\"s\"/><Placemark id=\"p\"><Point/>"
                "</Placemark></Folder><Placemark id=\"last\"/></Folder>"));
    EXPECT_EQ(c.reports,
              Apply(QString(c.content) + "<Change><Placemark targetId=\"last\"><name>x</name>"
                                         "</Placemark></Change>"));
    EXPECT_TRUE(Write(*folder).contains("<name>x</name>"));
  }
}

TEST_F(UpdateMessageTest, ReportsTellTheLineInTheDocumentOfTheUpdate) {
  struct Case {
    const char* document;
    qint64 line;
  };
  const Case cases[] = {
      {"<Update><Change><Folder targetId=\"none\"/></Change></Update>", 1},
      {"<Update>\n<targetHref>doc.kml</targetHref>\n\n<Change>\n\n<Folder targetId=\"none\"/>"
       "</Change></Update>",
       6},
      {"<NetworkLinkControl>\n<Update>\n<Change>\n</Change>\n\n<Create/>\n<Delete>\n<Folder "
       "targetId=\"none\"/></Delete></Update></NetworkLinkControl>",
       8},
  };
  for (const Case& c : cases) {
    const auto object = ReadAt("http://example.com/dir/update.kml", c.document);
    if (object->isOfType(Update::GetClassSchema()))
      static_cast<Update&>(*object).Apply(nullptr, 1.0F);
    else
      static_cast<NetworkLinkControl&>(*object).ApplyUpdates(nullptr);
    EXPECT_EQ(QStringList("Could not find <targetId> none"), TakeReports());
    EXPECT_EQ(c.line, GetLastLine());
  }
}

TEST_F(UpdateMessageTest, TheSettingDecidesWhatAFailureMeans) {
  struct Case {
    int handling;
    const char* name;
    QStringList reports;
  };
  const Case cases[] = {{0, "x", {}},
                        {1, "x", {"Could not find <targetId> none"}},
                        {2, "", {}}, // the end of it
                        {3, "x", {}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.handling);
    const auto folder = Read<Folder>("<Folder id=\"f\"/>");
    KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(c.handling);
    EXPECT_EQ(c.reports, Apply("<Change><Folder targetId=\"none\"/><Folder targetId=\"f\"><name>x"
                               "</name></Folder></Change>"));
    EXPECT_EQ(c.name, folder->GetName());
    KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
  }
}

} // namespace vorrel::kestan
