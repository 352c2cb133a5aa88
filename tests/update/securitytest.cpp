#include "kestan/core/schema.h"
#include "tests/update/updatetest.h"

namespace vorrel::kestan {

using UpdateSecurityTest = UpdateTest;

TEST_F(UpdateSecurityTest, AnUpdateIsTrustedByWhereItAndItsTargetComeFrom) {
  struct Case {
    const char* origin;
    const char* target; ///< Null for none.
    bool isTrusted;
    const char* absolute;
  };
  const Case cases[] = {
      {"http://a/u.kml", nullptr, true, "http://a/u.kml"},
      {"http://a/u.kml", "", true, "http://a/u.kml"},
      {"/dir/u.kml", "", true, "/dir/u.kml"},
      {"http://a/dir/u.kml", "doc.kml", true, "http://a/dir/doc.kml"},
      {"http://a/u.kml", "http://a/doc.kml", true, "http://a/doc.kml"},
      {"http://a/u.kml", "HTTP://A/doc.kml", true, "HTTP://A/doc.kml"},
      {"http://a/u.kml", "http://a:80/doc.kml", true, "http://a:80/doc.kml"},
      {"https://a/u.kml", "https://a/doc.kml", true, "https://a/doc.kml"},
      {"http://a:81/u.kml", "http://a:81/doc.kml", true, "http://a:81/doc.kml"},
      {"http://a/u.kml", "http://a:81/doc.kml", false, "http://a:81/doc.kml"},
      {"http://a/u.kml", "https://a/doc.kml", false, "https://a/doc.kml"},
      {"http://a/u.kml", "http://b/doc.kml", false, "http://b/doc.kml"},
      {"http://a/u.kml", "http://a.b/doc.kml", false, "http://a.b/doc.kml"},
      {"http://a/u.kml", "http://a@b/doc.kml", false, "http://a@b/doc.kml"},
      {"http://a/u.kml", "ftp://a/doc.kml", false, "ftp://a/doc.kml"},
      {"ftp://a/u.kml", "ftp://a/doc.kml", false, "ftp://a/doc.kml"},
      {"file:///dir/u.kml", "file:///dir/doc.kml", false, "file:///dir/doc.kml"},
      {"/dir/u.kml", "/dir/doc.kml", false, "/dir/doc.kml"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.origin) + " " + (c.target ? c.target : "none"));
    const auto update = MakeUpdate(QString(), c.target, c.origin);
    EXPECT_EQ(c.absolute, update->GetAbsoluteTargetHref());
    EXPECT_EQ(c.isTrusted, update->CheckUrlSecurity());
  }
}

TEST_F(UpdateSecurityTest, ATargetThatIsSetAnewIsLookedAtAnew) {
  const auto update = MakeUpdate(QString(), "http://b/doc.kml");
  EXPECT_FALSE(update->CheckUrlSecurity());
  update->SetTargetHref("doc.kml");
  EXPECT_EQ("http://example.com/dir/doc.kml", update->GetAbsoluteTargetHref());
  EXPECT_TRUE(update->CheckUrlSecurity());
}

TEST_F(UpdateSecurityTest, AStrangerMayOnlyShowHideAndOpen) {
  struct Case {
    const char* content;
    const char* field;
    const char* refused; ///< The value then; what a friend's update gives is another one.
    int violations;
  };
  const Case cases[] = {
      {"<Change><Folder targetId=\"f\"><visibility>0</visibility></Folder></Change>", "visibility",
       nullptr, 0},
      {"<Change><Folder targetId=\"f\"><open>1</open></Folder></Change>", "open", nullptr, 0},
      {"<Change><Folder targetId=\"f\"><gx:balloonVisibility>1</gx:balloonVisibility></Folder>"
       "</Change>",
       "balloonVisibility", nullptr, 0},
      {"<Change><Folder targetId=\"f\"><name>new</name><open>1</open></Folder></Change>", "name",
       "old", 1},
      {"<Change><Folder targetId=\"f\"><Snippet>new</Snippet></Folder></Change>", "Snippet/", "old",
       1},
      {"<Change><Folder targetId=\"f\"><Snippet maxLines=\"5\"/></Folder></Change>",
       "Snippet/maxLines", "2", 1},
      {"<Change><Folder targetId=\"f\"><TimeStamp><when>2002</when></TimeStamp></Folder></Change>",
       "TimeStamp/when", "2001", 1},
      {"<Change><Folder targetId=\"f\"><TimeStamp>2002</TimeStamp></Folder></Change>",
       "TimeStamp/when", "2001", 1},
      {"<Create><Folder targetId=\"f\"><Placemark id=\"new\"/></Folder></Create>", "Placemark",
       "p g", 1},
      {"<Delete><Placemark targetId=\"p\"/></Delete>", "Placemark", "p g", 1},
      {"<Delete><Placemark targetId=\"p\"/><Folder targetId=\"g\"/></Delete>", "Placemark", "p g",
       2},
  };
  const auto getValue = [](const SchemaObject& folder, const QString& field) {
    if (field != "Placemark")
      return Get(folder, field);
    QStringList ids;
    const Field* const children = folder.FindField("Placemark", Namespace::kKml, nullptr);
    for (int i = 0; i < children->getCount(folder); ++i)
      ids += children->GetObject(folder, i)->GetId();
    return ids.join(' ');
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    const QString document =
        "<Folder id=\"f\"><name>old</name><Snippet>old</Snippet><TimeStamp><when>2001</when>"
        "</TimeStamp><Placemark id=\"p\"/><Folder id=\"g\"/></Folder>";
    for (const bool isStranger : {true, false}) {
      const auto folder = ReadObject(document);
      const QString former = getValue(*folder, c.field);
      const auto update =
          MakeUpdate(c.content, "http://example.com/dir/doc.kml",
                     isStranger ? "http://example.org/u.kml" : "http://example.com/u.kml");
      update->Apply(nullptr, 1.0F);
      QStringList expected;
      for (int i = 0; isStranger && i < c.violations; ++i)
        expected += "<Update> Security Violation!";
      EXPECT_EQ(expected, TakeReports());
      if (isStranger && c.refused) {
        EXPECT_EQ(c.refused, getValue(*folder, c.field));
        EXPECT_EQ(former, getValue(*folder, c.field));
      } else {
        EXPECT_NE(former, getValue(*folder, c.field));
      }
    }
  }
}

TEST_F(UpdateSecurityTest, AReplacementAsksNobodyAndBringsNothing) {
  const auto folder = ReadObject(QString("<Folder id=\"f\"><Placemark id=\"a\"/><Placemark "
                                         "id=\"b\"/><Placemark id=\"c\"/></Folder>"));
  MakeUpdate("<Replace><Folder targetId=\"b\" id=\"n\"><name>unread</name></Folder></Replace>",
             "http://example.com/dir/doc.kml", "http://example.org/u.kml")
      ->Apply(nullptr, 1.0F);
  EXPECT_EQ(QStringList(), TakeReports());
  EXPECT_EQ("<Folder id=\"f\">\n\t<Placemark id=\"a\">\n\t</Placemark>\n\t<Folder id=\"n\">\n\t"
            "</Folder>\n\t<Placemark id=\"c\">\n\t</Placemark>\n</Folder>",
            Element(Write(*folder), "Folder"));
}

} // namespace vorrel::kestan
