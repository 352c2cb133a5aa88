#include "kestan/core/watcher.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/stylemappair.h"
#include "kestan/style/stylemapschema.h"
#include "tests/style/styletest.h"
#include "tests/support/observers.h"

#include <QStringList>

#include <random>

namespace vorrel::kestan {

namespace {

QString Map(const QString& id, const QString& normal, const QString& highlight) {
  return QStringLiteral("<StyleMap id='%1'><Pair><key>normal</key><styleUrl>%2</styleUrl></Pair>"
                        "<Pair><key>highlight</key><styleUrl>%3</styleUrl></Pair></StyleMap>")
      .arg(id, normal, highlight);
}

QString Reference(int index) { return QStringLiteral("#m%1").arg(index); }

QString Map(int index, const QString& normal, const QString& highlight) {
  return Map(QStringLiteral("m%1").arg(index), normal, highlight);
}

} // namespace

/// Maps that refer to each other in every way.
class StyleGraphTest : public StyleTest {};

TEST_F(StyleGraphTest, GraphsOfAnyShapeEnd) {
  constexpr int kMaps = 12;
  std::mt19937 random(7); // the standard fixes its numbers
  const auto target = [&] {
    const int index = static_cast<int>(random() % (kMaps + 4));
    return index < kMaps        ? Reference(index)
           : index == kMaps     ? QStringLiteral("#s")
           : index == kMaps + 1 ? QStringLiteral("#missing")
           : index == kMaps + 2 ? QStringLiteral("root://styles#hl")
                                : QStringLiteral("far.kml#s");
  };
  for (int round = 0; round < 60; ++round) {
    QString content;
    for (int i = 0; i < kMaps; ++i) {
      content += Map(i, target(), target());
      content += QStringLiteral("<Placemark><name>a%1</name><styleUrl>%2</styleUrl></Placemark>")
                     .arg(QString::number(i), Reference(i));
      content += QStringLiteral("<Placemark><name>b%1</name><styleUrl>%2</styleUrl><Style>"
                                "<LineStyle><width>5</width></LineStyle></Style></Placemark>")
                     .arg(QString::number(i), Reference(i));
      if (i == kMaps / 2)
        content += "<Style id='s'><LineStyle><color>ff000001</color></LineStyle></Style>";
    }
    const auto looks = [](const SchemaObject& document) {
      QStringList result;
      for (int i = 0; i < kMaps; ++i) {
        for (const int mode : {0, 1}) {
          const QString a = Look(*Find(document, QStringLiteral("a%1").arg(i)), mode);
          const QString b = Look(*Find(document, QStringLiteral("b%1").arg(i)), mode);
          if (a == "LineStyle.color=ff000001") {
            EXPECT_EQ("LineStyle.color=ff000001 LineStyle.width=5", b);
          }
          result << a << b;
        }
      }
      return result;
    };
    auto document = ReadLocal(InDocument(content));
    const QStringList before = looks(*document);
    const QString first = Write(*document);
    document.reset(); // else references of the next one could lead here
    document = ReadLocal(first);
    EXPECT_EQ(before, looks(*document));
    EXPECT_EQ(first, Write(*document));
  }
}

TEST_F(StyleGraphTest, LoopsGoWithTheirDocument) {
  const QString loops[] = {
      Map(0, Reference(0), Reference(0)),
      Map(0, Reference(1), QString()) + Map(1, Reference(0), Reference(1)),
      Map(0, Reference(1), QString()) + Map(1, Reference(2), QString()) +
          Map(2, Reference(0), Reference(1)),
      // Through a map of a pair's own.
      "<StyleMap id='m0'><Pair><key>normal</key><StyleMap id='m1'><Pair><key>normal</key>"
      "<styleUrl>#m0</styleUrl></Pair></StyleMap></Pair></StyleMap>",
      "<StyleMap id='m1'><Pair><key>normal</key><styleUrl>#m0</styleUrl></Pair></StyleMap>"
      "<StyleMap id='m0'><Pair><key>normal</key><StyleMap><Pair><key>normal</key>"
      "<styleUrl>#m1</styleUrl></Pair></StyleMap></Pair></StyleMap>",
      // Behind more than anybody looks through.
      "<StyleMap id='m0'><Pair><key>normal</key><StyleMap><Pair><key>normal</key><StyleMap "
      "id='m1'>" +
          QString("<Pair/>").repeated(300) +
          "<Pair><key>normal</key><styleUrl>#m0</styleUrl></Pair></StyleMap></Pair></StyleMap>"
          "</Pair></StyleMap>"};
  for (const QString& loop : loops) {
    SCOPED_TRACE(loop.toStdString());
    auto document = ReadLocal(
        InDocument(loop + "<Placemark><name>p</name><styleUrl>#m0</styleUrl><Style/></Placemark>"));
    EXPECT_EQ("", Look(*Find(*document, "p")));
    Watcher<StyleMap> first(StyleMap::find("/dir/doc.kml", "m0"));
    Watcher<StyleMap> second(StyleMap::find("/dir/doc.kml", "m1"));
    EXPECT_TRUE(first.get());
    document.reset();
    EXPECT_FALSE(first.get());
    EXPECT_FALSE(second.get());
  }
}

TEST_F(StyleGraphTest, AReferenceKeepsItsTargetInARingToo) {
  const QString url = "/dir/a.kml";
  const QString style = "<Style id='s'><LineStyle><width>3</width></LineStyle></Style>"
                        "<Style id='t'><LineStyle><width>4</width></LineStyle></Style>";
  const QString feature = "<Placemark><name>p</name><styleUrl>#a</styleUrl></Placemark>";
  const QString maps[] = {Map("a", "#s", "#b"), Map("b", "#a", "#t")};
  // Within one document, whichever map leaves it.
  for (const int order : {0, 1}) {
    for (const char* leaves : {"a", "b"}) {
      SCOPED_TRACE(leaves);
      auto document =
          ReadAt(url, InDocument(style + maps[order] + maps[1 - order] + feature + feature));
      Document& root = static_cast<Document&>(*document);
      Watcher<StyleMap> a(StyleMap::find(url, "a"));
      Watcher<StyleMap> b(StyleMap::find(url, "b"));
      const RefPtr<AbstractFeature> kept(Find(*document, "p"));
      root.RemStyleSelector(*StyleMap::find(url, leaves));
      EXPECT_EQ("LineStyle.width=3", Look(*kept));
      EXPECT_EQ("LineStyle.width=4", Look(*kept, kStyleHighlight));
      // The text says the same.
      EXPECT_EQ(2, Write(*document).count("<StyleMap "));
      // And so does what is left of the document.
      document.reset();
      EXPECT_EQ("LineStyle.width=4", Look(*kept, kStyleHighlight));
      EXPECT_TRUE(a.get() && b.get());
      kept->SetReferencedStyleSelector(nullptr);
      EXPECT_FALSE(a.get());
      EXPECT_FALSE(b.get());
    }
  }

  // The second document closes the loop, or leads further than anybody looks, or both.
  const QString longMap =
      "<StyleMap id='b'>" + QString("<Pair/>").repeated(300) +
      "<Pair><key>normal</key><styleUrl>%1</styleUrl></Pair><Pair><key>highlight</key>"
      "<styleUrl>#t</styleUrl></Pair></StyleMap>";
  const struct {
    QString map;
    bool stays;
  } cases[] = {{Map("b", "a.kml#a", "#t"), true},
               {Map("b", "#b", "#t"), true},
               {longMap.arg("#t"), true},
               {longMap.arg("a.kml#a"), false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.map.right(200).toStdString());
    auto document = ReadAt(url, InDocument(Map("a", "root://styles#hl", "b.kml#b") + feature));
    auto other = ReadAt("/dir/b.kml", InDocument(c.map + style));
    Watcher<StyleMap> b(StyleMap::find("/dir/b.kml", "b"));
    const RefPtr<AbstractFeature> kept(Find(*document, "p"));
    EXPECT_EQ("LineStyle.width=4", Look(*kept, kStyleHighlight));
    other.reset();
    EXPECT_EQ(c.stays ? "LineStyle.width=4" : "failed", Look(*kept, kStyleHighlight));
    EXPECT_EQ("IconStyle.scale=1.2", Look(*kept));
    EXPECT_EQ(c.stays, b.get() != nullptr);
    document.reset();
    EXPECT_EQ(c.stays, b.get() != nullptr);
    kept->SetReferencedStyleSelector(nullptr);
    EXPECT_FALSE(b.get());
  }
}

// Maps that a client made and never put anywhere.
TEST_F(StyleGraphTest, RingsThatNobodyUsesGo) {
  QString key;
  for (const bool isOwned : {false, true}) {
    const auto document = ReadLocal(InDocument("<Placemark/>"));
    auto& root = static_cast<Document&>(*document);
    RefPtr<StyleMap> maps[3];
    for (RefPtr<StyleMap>& map : maps)
      map = new StyleMap(KmlId(QStringLiteral("m%1").arg(&map - maps), "/dir/doc.kml"), QString());
    for (int i = 0; i < 3; ++i) {
      const RefPtr<StyleMap::Pair> pair(new StyleMap::Pair(KmlId(), QString()));
      pair->SetKey("normal");
      pair->SetStyleSelector(maps[(i + 1) % 3].get());
      StyleMapSchema::GetSingleton().pairs.add(*maps[i], pair.get());
      if (isOwned)
        root.AddStyleSelector(*maps[i]);
    }
    Watcher<StyleMap> first(maps[0].get());
    Watcher<StyleMap> last(maps[2].get());
    for (RefPtr<StyleMap>& map : maps) {
      root.RemStyleSelector(*map);
      map.reset();
    }
    EXPECT_FALSE(first.get());
    EXPECT_FALSE(last.get());
  }
}

// What was read from elsewhere goes on meaning the same, moved or copied.
TEST_F(StyleGraphTest, FeaturesKeepTheirLooksInAnotherDocument) {
  const QString style = "<Style id='s'><LineStyle><width>%1</width></LineStyle></Style>";
  const QString pair = "<Pair><key>normal</key><styleUrl>#s</styleUrl></Pair>";
  const QString features = "<Placemark><name>shared</name><styleUrl>#s</styleUrl></Placemark>"
                           "<Placemark><name>own</name><StyleMap>" +
                           pair + "</StyleMap></Placemark>" +
                           "<Placemark><name>late</name><styleUrl>#late</styleUrl></Placemark>";
  for (const char* folder : {"http://example.com/dir/", "/dir/"}) {
    SCOPED_TRACE(folder);
    const auto at = [&](const char* name) { return QLatin1String(folder) + QLatin1String(name); };
    const auto far = ReadAt(at("far.kml"), InDocument(style.arg(6) + features));
    auto near = ReadAt(at("near.kml"), InDocument(style.arg(7) + "<Placemark/>"));
    auto& document = static_cast<Document&>(*near);
    for (const char* name : {"shared", "own", "late"}) {
      const RefPtr<AbstractFeature> feature(Find(*far, name));
      const RefPtr<SchemaObject> copy = feature->clone(true, nullptr);
      static_cast<AbstractFeature&>(*copy).SetName(feature->GetName() + "Copy");
      document.AddChild(*feature);
      document.AddChild(static_cast<AbstractFeature&>(*copy));
    }
    const QString text = Write(*near);
    near = ReadAt(at("near.kml"), text);
    // The document that it waits for comes last.
    const auto renewed = ReadAt(
        at("far.kml"), InDocument(style.arg(6) + QString(style).replace("'s'", "'late'").arg(8)));
    for (const QString suffix : {"", "Copy"}) {
      EXPECT_EQ("LineStyle.width=6", Look(*Find(*near, "shared" + suffix))) << text.toStdString();
      EXPECT_EQ("LineStyle.width=6", Look(*Find(*near, "own" + suffix))) << text.toStdString();
      EXPECT_EQ("LineStyle.width=8", Look(*Find(*near, "late" + suffix))) << text.toStdString();
    }
  }
}

TEST_F(StyleGraphTest, APairIsMadeWhateverItsNoticeEnds) {
  for (const int drops : {1, 2, 3}) {
    SCOPED_TRACE(drops);
    RefPtr<StyleMap> map(new StyleMap(KmlId(), "http://h/a.kml"));
    RefPtr<Style> style(new Style(KmlId(), "http://h/a.kml"));
    const Watcher<Style> watcher(style.get());
    {
      OnCreate dropper(StyleMap::Pair::GetClassSchema());
      dropper.deed = [&](SchemaObject&) {
        if ((drops & 1) != 0)
          map.reset();
        if ((drops & 2) != 0)
          style.reset();
      };
      map->setStyle(kStyleNormal, *style);
    }
    EXPECT_EQ((drops & 2) == 0, watcher.get() != nullptr);
    if (map) {
      QString key;
      const StyleMap::Pair* const pair = map->GetStyleMapPair(kStyleNormal, key);
      ASSERT_TRUE(pair);
      EXPECT_EQ(nullptr, pair->GetStyleSelector());
    }
  }
}

TEST_F(StyleGraphTest, WritingMakesNoNews) {
  const auto document = ReadLocal(InDocument(
      "<Style id='s'/><Placemark><name>p</name><styleUrl>#s</styleUrl><Style/></Placemark>"));
  const OnCreate counter(SchemaObject::GetClassSchema());
  EXPECT_TRUE(Write(*Find(*document, "p")).contains("<Style id=\"s\">"));
  EXPECT_EQ(0, counter.seen);
}

// Each map refers to the next one twice: 60 of them make 2 to the 60th ways.
TEST_F(StyleGraphTest, LongChainsOfMapsAreNoProblem) {
  const QString placemark = "<Placemark><name>p</name><styleUrl>#m0</styleUrl>"
                            "<Style><PolyStyle><fill>0</fill></PolyStyle></Style></Placemark>";
  const std::pair<int, bool> chains[] = {{60, true}, {20000, true}, {20000, false}};
  for (const auto& [count, forward] : chains) {
    SCOPED_TRACE(QStringLiteral("%1 %2").arg(count).arg(forward).toStdString());
    const QString id = QStringLiteral("m%1").arg(count);
    const QString style = "<Style id='" + id + "'><LineStyle><width>6</width></LineStyle></Style>";
    QString content = forward ? placemark : style;
    for (int i = 0; i < count; ++i) {
      const int index = forward ? i : count - 1 - i;
      content += Map(index, Reference(index + 1), Reference(index + 1));
    }
    content += forward ? style : placemark;
    const auto document = ReadLocal(InDocument(content));
    const AbstractFeature* feature = Find(*document, "p");
    EXPECT_EQ("LineStyle.width=6 PolyStyle.fill=0", Look(*feature));
    EXPECT_EQ(count, Write(*document).count("<StyleMap "));
    Style::find("/dir/doc.kml", id)->GetLineStyle()->SetWidth(7);
    if (count == 60) { // further away, nobody hears of it
      EXPECT_EQ("LineStyle.width=7 PolyStyle.fill=0", Look(*feature));
    }
  }
}

// Each pair that is read changes the map for all that are there already.
TEST_F(StyleGraphTest, AMapMayHaveManyPairsThatReferToIt) {
  constexpr int kPairs = 3500;
  QString pairs;
  for (int i = 0; i < kPairs; ++i)
    pairs += QStringLiteral("<Pair><key>k%1</key><styleUrl>#m</styleUrl></Pair>").arg(i);
  const auto document = ReadLocal(InDocument(
      "<Placemark><name>p</name><styleUrl>#m</styleUrl><Style><PolyStyle><fill>0</fill></PolyStyle>"
      "</Style></Placemark><StyleMap id='m'>" +
      pairs + "<Pair><key>normal</key><styleUrl>#s</styleUrl></Pair></StyleMap>" +
      "<Style id='s'><LineStyle><width>6</width></LineStyle></Style>"));
  const AbstractFeature* feature = Find(*document, "p");
  const StyleMap* map = StyleMap::find("/dir/doc.kml", "m");
  EXPECT_EQ(kPairs + 2, map->GetOwnerCount()); // the placemark and the document own it too
  EXPECT_GE(feature->GetRevision(), map->GetRevision());
  EXPECT_EQ("LineStyle.width=6 PolyStyle.fill=0", Look(*feature));
  Style::find("/dir/doc.kml", "s")->GetLineStyle()->SetWidth(7);
  EXPECT_EQ("LineStyle.width=7 PolyStyle.fill=0", Look(*feature));
}

} // namespace vorrel::kestan
