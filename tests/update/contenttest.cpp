#include "kestan/core/kestanoptions.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/kml.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/read/kmlhandler.h"
#include "tests/support/xml.h"
#include "tests/update/updatetest.h"

namespace vorrel::kestan {

using UpdateContentTest = UpdateTest;

namespace {

QString GetContent(const SchemaObject& update) {
  return update.HasUnknownData() ? update.GetUnknownData()->fields : QString();
}

} // namespace

TEST_F(UpdateContentTest, ContentIsKeptAsTextWhateverItIs) {
  struct Case {
    const char* content;
    const char* kept; ///< Null where it's the same.
  };
  const Case cases[] = {
      {"", nullptr},
      {"<Change><Placemark targetId=\"p\"><name>x</name></Placemark></Change>", nullptr},
      {"<Change>\n  <Placemark targetId=\"p\">\n\t<name>x</name>\n </Placemark></Change>", nullptr},
      {"\n  <Create/>\n\n<Delete/>\n", "<Create></Create>\n\n<Delete></Delete>"},
      {"<Placemark id=\"p\"><Unknown a=\"&lt;\"/></Placemark><id>x</id>",
       "<Placemark id=\"p\"><Unknown a=\"&lt;\"></Unknown></Placemark><id>x</id>"},
      {" stray <Change/> more ", "stray <Change></Change> more"},
      {"only &amp; text", "only <![CDATA[&]]> text"},
      {"<Change><u:a xmlns:u=\"urn:u\"><u:b/></u:a></Change>",
       "<Change><u:a xmlns:u=\"urn:u\"><u:b></u:b></u:a></Change>"},
      {"<gx:Foo/><atom:link/><xal:AddressDetails/>",
       "<gx:Foo></gx:Foo><atom:link></atom:link><xal:AddressDetails></xal:AddressDetails>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    for (const int handling : {0, 1, 2, 3}) {
      KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(handling);
      const auto update = MakeUpdate(c.content);
      EXPECT_EQ(c.kept ? c.kept : c.content, GetContent(*update));
      EXPECT_EQ("doc.kml", update->GetTargetHref());
    }
    KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
  }
}

TEST_F(UpdateContentTest, ContentComesBackByteForByte) {
  const char* const documents[] = {
      "<NetworkLinkControl><Update><targetHref>a&amp;b.kml</targetHref>\n\n <Change>\n<Folder "
      "targetId=\"f\"/> \n</Change>\n <Delete/> stray "
      "<Create>&lt;</Create></Update><Update><Change/>"
      "</Update></NetworkLinkControl>",
      "<kml xmlns=\"http://www.opengis.net/kml/2.2\" xmlns:k=\"http://www.opengis.net/kml/2.2\" "
      "xmlns:x=\"http://www.vorrel.com/kml/ext/2.2\" xmlns:u=\"urn:u\"><NetworkLinkControl><Update>"
      "<k:Change><k:Folder targetId=\"f\"><x:balloonVisibility>1</x:balloonVisibility><u:a "
      "u:b=\"1\"/>"
      "</k:Folder></k:Change></Update></NetworkLinkControl></kml>",
      "<k:NetworkLinkControl xmlns=\"urn:foreign\" xmlns:k=\"http://www.opengis.net/kml/2.2\" "
      "xmlns:gx=\"urn:other\"><k:Update><k:targetHref>d</k:targetHref><Change "
      "gx:a=\"1\"/><k:Change/>"
      "</k:Update></k:NetworkLinkControl>",
  };
  for (const char* const document : documents) {
    SCOPED_TRACE(document);
    // Of a file with nothing else the control is what's left at the root.
    const auto read = [](const QByteArray& bytes) {
      KmlHandler handler(GetDocumentUrl(), 2, nullptr, nullptr, nullptr);
      ExpatHandler::LoadXml(handler, reinterpret_cast<const unsigned char*>(bytes.constData()),
                            static_cast<std::size_t>(bytes.size()));
      return RefPtr<SchemaObject>(handler.GetRoot());
    };
    const auto root = read(document);
    ASSERT_TRUE(root);
    const QString first = Write(*root);
    EXPECT_EQ(QString(), FindXmlError(first.toUtf8()));
    EXPECT_EQ(first, Write(*read(first.toUtf8())));
    EXPECT_EQ(QStringList(), TakeReports());
  }
}

TEST_F(UpdateContentTest, PrefixesMeanWhatTheyMeantWhereTheUpdateWasRead) {
  struct Case {
    const char* root;    ///< Its declarations.
    const char* content; ///< Of the `Update`.
  };
  const Case cases[] = {
      {"", "<Change><Folder targetId=\"f\"><name>x</name></Folder></Change>"},
      {"xmlns:k=\"http://www.opengis.net/kml/2.2\"",
       "<k:Change><k:Folder targetId=\"f\"><k:name>x</k:name></k:Folder></k:Change>"},
      {"xmlns=\"http://www.opengis.net/kml/2.2\" xmlns:gx=\"http://www.opengis.net/kml/2.2\"",
       "<gx:Change><gx:Folder targetId=\"f\"><gx:name>x</gx:name></gx:Folder></gx:Change>"},
      {"", "<k:Change xmlns:k=\"http://www.opengis.net/kml/2.2\"><k:Folder targetId=\"f\"><name "
           "xmlns=\"http://www.opengis.net/kml/2.1\">x</name></k:Folder></k:Change>"},
      // A keyword is one whatever it's in.
      {"", "<Change xmlns=\"urn:u\"><k:Folder xmlns:k=\"http://www.opengis.net/kml/2.2\" "
           "targetId=\"f\"><k:name>x</k:name></k:Folder></Change>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    const auto folder = Read<Folder>("<Folder id=\"f\"/>");
    const auto update =
        ReadAt("http://example.com/dir/u.kml",
               QStringLiteral("<Update %1><targetHref>doc.kml</targetHref>%2</Update>")
                   .arg(QLatin1String(c.root), QLatin1String(c.content)));
    static_cast<Update&>(*update).Apply(nullptr, 1.0F);
    EXPECT_EQ(QStringList(), TakeReports());
    EXPECT_EQ("x", folder->GetName());
  }
}

TEST_F(UpdateContentTest, ContentThatIsNoXmlDoesNoHarm) {
  const auto folder = Read<Folder>("<Folder id=\"f\"/>");
  const char* const texts[] = {"<",        "</Update>",
                               "<Change>", "</Change><Change>",
                               "&x;",      "<Change><Folder targetId=\"f\"><name>x",
                               "]]>",      "<!--",
                               "\x01"};
  for (const char* const text : texts) {
    const auto update = MakeUpdate(QString());
    update->unknownData().fields = QLatin1String(text);
    update->Apply(nullptr, 1.0F);
  }
  const auto update = MakeUpdate(QString());
  update->unknownData().fields = QString(QChar(0xD800)) + "<Change/>" + QChar(0);
  update->Apply(nullptr, 1.0F);
  EXPECT_EQ("x", folder->GetName());
}

TEST_F(UpdateContentTest, ATargetIsWrittenAsItWasGiven) {
  RefPtr<Update> update(new Update("a&amp;b", KmlId(), "http://h/u.kml"));
  update->SetTargetHref("a&b", "a&amp;b");
  EXPECT_TRUE(Write(*update).contains("<targetHref>a&amp;b</targetHref>"));
  EXPECT_TRUE(update->CheckUrlSecurity());
  const auto copy = update->clone(true, nullptr);
  EXPECT_TRUE(Write(*copy).contains("<targetHref>a&amp;b</targetHref>"));
  update->SetTargetHref("http://b/c<d");
  EXPECT_TRUE(Write(*update).contains("<targetHref>http://b/c&lt;d</targetHref>"));
  EXPECT_EQ("http://b/c<d", update->GetAbsoluteTargetHref());
  EXPECT_FALSE(update->CheckUrlSecurity());
}

TEST_F(UpdateContentTest, TheUpdatesOfAControlAreAppliedInOrder) {
  const auto folder = Read<Folder>("<Folder id=\"f\"/>");
  const auto root = ReadAt(
      "http://example.com/dir/u.kml",
      "<NetworkLinkControl><Update><targetHref>doc.kml</targetHref><Create><Folder targetId=\"f\">"
      "<Placemark id=\"n\"/></Folder></Create></Update><Update><targetHref>doc.kml</targetHref>"
      "<Change><Placemark targetId=\"n\"><name>x</name></Placemark></Change></Update>"
      "</NetworkLinkControl>");
  auto& control = static_cast<NetworkLinkControl&>(*root);
  control.ApplyUpdates(nullptr);
  ASSERT_EQ(1, folder->GetChildCount());
  EXPECT_EQ("x", folder->GetChild(0)->GetName());
  control.UndoUpdates(nullptr); // nothing was kept
  EXPECT_EQ("x", folder->GetChild(0)->GetName());

  for (const RefPtr<Update>& update : control.GetUpdates())
    update->SetKeepEdits(true);
  folder->GetChild(0)->SetName("y");
  control.ApplyUpdates(nullptr);
  control.UndoUpdates(nullptr);
  EXPECT_EQ("y", folder->GetChild(0)->GetName());
  EXPECT_EQ(2, folder->GetChildCount());
}

} // namespace vorrel::kestan
