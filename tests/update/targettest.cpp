#include "kestan/core/schema.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "tests/support/fieldlog.h"
#include "tests/update/updatetest.h"

#include <algorithm>
#include <random>

namespace vorrel::kestan {

using UpdateTargetTest = UpdateTest;

TEST_F(UpdateTargetTest, ObjectsComeAndGo) {
  struct Case {
    const char* content;
    const char* ids; ///< Of the folder's children, with their names.
  };
  const Case cases[] = {
      {"<Create><Folder targetId=\"f\"><Placemark id=\"n\"><name>x</name></Placemark></Folder>"
       "</Create>",
       "a b c n:x"},
      {"<Create><Folder targetId=\"f\"><Placemark id=\"n\" targetIndex=\"0\"/><Placemark id=\"m\" "
       "targetIndex=\"2\"/><Placemark id=\"o\" targetIndex=\"99\"/></Folder></Create>",
       "n a m b c o"},
      {"<Create><Folder targetId=\"f\"><Placemark id=\"n\" targetIdIndex=\"doc.kml#b\"/></Folder>"
       "</Create>",
       "a n b c"},
      {"<Delete><Placemark targetId=\"a\"/></Delete>", "b c"},
      {"<Delete><Placemark targetId=\"c\"/><Placemark targetId=\"a\"/></Delete>", "b"},
      {"<Delete><Placemark targetId=\"a\"><name>unread</name><Unknown/></Placemark></Delete>"
       "<Change><Placemark targetId=\"b\"><name>y</name></Placemark></Change>",
       "b:y c"},
      // Places count what is left.
      {"<Delete><Placemark targetId=\"a\"/></Delete><Create><Folder targetId=\"f\"><Placemark "
       "id=\"n\" targetIndex=\"1\"/></Folder></Create><Delete><Placemark targetId=\"b\"/></Delete>",
       "n c"},
      {"<Delete><Placemark targetId=\"a\"/></Delete><Create><Folder targetId=\"f\"><Placemark "
       "id=\"n\" targetIdIndex=\"b\"/></Folder></Create>",
       "n b c"},
      // An id that has become free is given again.
      {"<Delete><Placemark targetId=\"a\"/></Delete><Create><Folder targetId=\"f\"><Placemark "
       "id=\"a\"><name>new</name></Placemark></Folder></Create><Change><Placemark targetId=\"a\">"
       "<address>here</address></Placemark></Change>",
       "b c a:new"},
      {"<Replace><Folder targetId=\"b\" id=\"n\"><name>unread</name></Folder></Replace>", "a n c"},
      {"<Replace><Placemark targetId=\"b\" id=\"b\"/></Replace><Change><Placemark targetId=\"b\">"
       "<name>z</name></Placemark></Change>",
       "a b:z c"},
      // What is there already may move.
      {"<Create><Folder targetId=\"f\"><Folder id=\"n\"/></Folder></Create><Create><Folder "
       "id=\"unused\"><Placemark targetId=\"a\"/></Folder></Create>",
       "b c n"},
      {"<Create><Placemark id=\"nowhere\"/></Create>", "a b c"},
      {"<Create><Placemark targetId=\"a\"><name>x</name></Placemark></Create>", "a:x b c"},
      // Nothing comes to stand below itself, nor is looked for there.
      {"<Delete><Placemark targetId=\"a\"/></Delete><Create><Folder id=\"n\"><Folder id=\"m\">"
       "<Placemark/><Folder targetId=\"n\" targetIndex=\"0\"/></Folder></Folder></Create><Change>"
       "<Folder targetId=\"n\"><name>x</name></Folder></Change>",
       "b c"},
      {"<Change/><Create/><Delete/><Replace/>", "a b c"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    const auto folder = Read<Folder>("<Folder id=\"f\"><Placemark id=\"a\"/><Placemark id=\"b\"/>"
                                     "<Placemark id=\"c\"/></Folder>");
    EXPECT_EQ(QStringList(), Apply(c.content));
    QStringList ids;
    for (int i = 0; i < folder->GetChildCount(); ++i) {
      const AbstractFeature& child = *folder->GetChild(i);
      EXPECT_EQ(i, child.GetArrayIndex());
      ids += child.GetName().isEmpty() ? child.GetId() : child.GetId() + ":" + child.GetName();
    }
    EXPECT_EQ(c.ids, ids.join(' '));
  }
}

// What comes, goes, moves and is replaced, by places and by ids, gives the order that it would have
// one step after the other.
TEST_F(UpdateTargetTest, PlacesCountWhatHasComeAndGoneBefore) {
  constexpr int kSteps = 3000;
  QStringList ids;
  QString children;
  for (int i = 0; i < 200; ++i) {
    ids += "p" + QString::number(i);
    children += QStringLiteral("<Placemark id=\"p%1\"/>").arg(i);
  }
  const auto folder = Read<Folder>("<Folder id=\"f\">" + children + "</Folder>");
  std::minstd_rand random(7); // the same on every run
  QString content;
  for (int i = 0; i < kSteps; ++i) {
    const int place = static_cast<int>(random() % (static_cast<unsigned>(ids.size()) + 2U));
    const bool isThere = place < ids.size();
    const QString id = isThere ? ids[place] : QString();
    const QString made = "n" + QString::number(i);
    const auto create = [&](const QString& attrs) {
      return "<Create><Folder targetId=\"f\"><Placemark id=\"" + made + "\"" + attrs +
             "/></Folder></Create>";
    };
    const auto what = random() % 10;
    if (what < 4) {
      content += create(QStringLiteral(" targetIndex=\"%1\"").arg(place));
      ids.insert(std::min(place, static_cast<int>(ids.size())), made);
    } else if (what < 6 && isThere) {
      content += create(" targetIdIndex=\"#" + id + "\"");
      ids.insert(place, made);
    } else if (what < 7) {
      content += create(QString());
      ids += made;
    } else if (what < 8 && isThere) {
      content += "<Delete><Placemark targetId=\"" + id + "\"/></Delete>";
      ids.removeAt(place);
    } else if (what < 9 && isThere) {
      content +=
          "<Create><Folder id=\"unused\"><Placemark targetId=\"" + id + "\"/></Folder></Create>";
      ids.removeAt(place);
    } else if (isThere) {
      content += "<Replace><Placemark targetId=\"" + id + "\" id=\"" + made + "\"/></Replace>";
      ids[place] = made;
    }
  }
  EXPECT_EQ(QStringList(), Apply(content));
  QStringList there;
  for (int i = 0; i < folder->GetChildCount(); ++i) {
    EXPECT_EQ(i, folder->GetChild(i)->GetArrayIndex());
    there += folder->GetChild(i)->GetId();
  }
  EXPECT_EQ(ids, there);
}

TEST_F(UpdateTargetTest, WhatATargetPreservesStays) {
  const QString document =
      "<Folder id=\"f\" xmlns:u=\"urn:u\" u:mark=\"1\"><name u:a=\"1\">a</name><name>b</name>"
      "<u:one>text</u:one><Style u:c=\"1\"><u:two/></Style><Snippet maxLines=\"9\" u:d=\"1\">s"
      "</Snippet><Placemark id=\"p\" other=\"1\"><u:three/><Style/></Placemark></Folder>";
  const auto plain = ReadObject(document);
  const QString before = Write(*plain);
  const auto folder = ReadObject(document);
  const auto update = MakeUpdate(
      "<Change><Folder targetId=\"f\" strange=\"1\"><open more=\"1\">1</open><Unknown>x</Unknown>"
      "<Style><Nothing/></Style><Snippet maxLines=\"3\"><None/></Snippet></Folder></Change>");
  update->SetKeepEdits(true);
  update->Apply(nullptr, 1.0F);
  EXPECT_EQ(QStringList({"Unknown attribute strange=\"1\"", "Unknown element <Unknown>",
                         "Unknown element <Nothing>", "Unknown element <None>"}),
            TakeReports());
  const QString changed = Write(*folder);
  EXPECT_EQ(QString(before)
                .replace("maxLines=\"9\"", "maxLines=\"3\"")
                .replace("</name>\n\t<Snippet", "</name>\n\t<open>1</open>\n\t<Snippet"),
            changed);
  update->ApplyEdits(0.0F);
  EXPECT_EQ(before, Write(*folder));
}

TEST_F(UpdateTargetTest, WhatItMakesIsReadAsInAnyDocumentAndStays) {
  const auto folder = Read<Folder>("<Folder id=\"f\"/>");
  const QString made =
      "<Placemark id=\"n\" u:mark=\"1\"><name u:a=\"1\">x</name><u:one u:b=\"2\">text</u:one>"
      "<Style><LineStyle><width>3</width><u:two/></LineStyle></Style><TimeStamp><when>once</when>"
      "</TimeStamp><MultiGeometry><Point><coordinates>here</coordinates></Point><LineString>"
      "<coordinates>there</coordinates></LineString></MultiGeometry></Placemark>";
  const auto update = ReadAt("http://example.com/dir/update.kml",
                             "<Update xmlns:u=\"urn:u\"><targetHref>doc.kml</targetHref><Create>"
                             "<Folder targetId=\"f\">" +
                                 made + "</Folder></Create></Update>");
  static_cast<Update&>(*update).SetKeepEdits(true);
  static_cast<Update&>(*update).Apply(nullptr, 1.0F);
  EXPECT_EQ(QStringList({"Unknown element <u:one>", "Unknown element <u:two>"}), TakeReports());
  const AbstractFeature& child = *folder->GetChild(0);
  EXPECT_EQ(GetDocumentUrl(), child.GetUrl());
  EXPECT_EQ(GetDocumentUrl(), child.GetBaseUrl());
  EXPECT_EQ(2U, child.GetAccess());
  const auto plain = ReadObject("<Folder id=\"f\" xmlns:u=\"urn:u\">" + made + "</Folder>");
  EXPECT_EQ(Write(*plain), Write(*folder));
  static_cast<Update&>(*update).ApplyEdits(0.0F); // what was made stays, and its values go back
  EXPECT_EQ("", Get(child, "name"));
  EXPECT_EQ("1", Get(child, "Style/LineStyle/width"));
}

TEST_F(UpdateTargetTest, EachValueIsToldOnce) {
  const auto folder = Read<Folder>("<Folder id=\"f\"><Placemark id=\"a\"/></Folder>");
  FieldLog log(*folder);
  Apply("<Change><Folder targetId=\"f\"><name>x</name><open>1</open></Folder></Change>");
  EXPECT_EQ("name open", log.take());
  Apply("<Delete><Placemark targetId=\"a\"/></Delete>");
  EXPECT_EQ("AbstractFeature", log.take());
  Apply("<Create><Folder targetId=\"f\"><Placemark id=\"b\"/></Folder></Create>");
  EXPECT_EQ("AbstractFeature", log.take());
  Apply("<Replace><Placemark targetId=\"b\" id=\"c\"/></Replace>");
  EXPECT_EQ("AbstractFeature", log.take());
}

} // namespace vorrel::kestan
