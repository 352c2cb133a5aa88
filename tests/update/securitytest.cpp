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

TEST_F(UpdateSecurityTest, AStrangerMayOnlyShowHideOpenAndReplace) {
  struct Case {
    const char* content;
    int violations;
    const char* change = nullptr; ///< That a stranger brings about all the same.
  };
  const Case cases[] = {
      {"<Change><Folder targetId=\"f\"><visibility>0</visibility></Folder></Change>", 0,
       "<visibility>0"},
      {"<Change><Folder targetId=\"f\"><name>new</name><open>1</open></Folder></Change>", 1,
       "<open>1"},
      {"<Change><Folder targetId=\"f\"><gx:balloonVisibility>1</gx:balloonVisibility></Folder>"
       "</Change>",
       0, "<gx:balloonVisibility>1"},
      {"<Change><Folder targetId=\"f\"><Snippet maxLines=\"5\">new</Snippet></Folder></Change>", 2},
      {"<Change><Folder targetId=\"f\"><TimeStamp>2002</TimeStamp></Folder></Change>", 1},
      {"<Change><Folder targetId=\"f\"><TimeStamp><when>2002</when></TimeStamp></Folder></Change>",
       1},
      {"<Change><LinearRing targetId=\"r\"><gx:hiddenEdgeList>1</gx:hiddenEdgeList><coordinates>1,2"
       "</coordinates></LinearRing></Change>",
       2},
      {"<Create><Folder targetId=\"f\"><Placemark id=\"new\"/></Folder></Create>", 1},
      {"<Delete><Placemark targetId=\"p\"/><Folder targetId=\"g\"/></Delete>", 2},
      {"<Replace><Folder targetId=\"p\" id=\"n\"/></Replace>", 0, "<Folder id=\"n\""},
  };
  for (const Case& c : cases) {
    for (const bool isStranger : {true, false}) {
      SCOPED_TRACE(c.content);
      const auto folder = ReadObject(
          QString("<Folder id=\"f\"><Snippet>old</Snippet><TimeStamp><when>2001</when></TimeStamp>"
                  "<Placemark id=\"p\"><LinearRing id=\"r\"/></Placemark><Folder id=\"g\"/>"
                  "</Folder>"));
      const QString before = Write(*folder);
      MakeUpdate(c.content, "http://example.com/dir/doc.kml",
                 isStranger ? "http://example.org/u.kml" : "http://example.com/u.kml")
          ->Apply(nullptr, 1.0F);
      const QStringList reports = TakeReports();
      EXPECT_EQ(isStranger ? c.violations : 0, reports.size());
      EXPECT_EQ(reports.size(), reports.filter("<Update> Security Violation!").size());
      const QString after = Write(*folder);
      EXPECT_EQ(isStranger && !c.change, after == before);
      EXPECT_TRUE(!c.change || after.contains(c.change));
      EXPECT_FALSE(isStranger && after.contains("new"));
    }
  }
}

} // namespace vorrel::kestan
