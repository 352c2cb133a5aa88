#include "kestan/feature/document.h"
#include "kestan/style/balloonstyle.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/liststyle.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/stylemappair.h"
#include "tests/style/styletest.h"

#include <QRegularExpression>

namespace vorrel::kestan {

class StyleSelectionTest : public StyleTest {};

TEST_F(StyleSelectionTest, AFeatureAnswersItsLookInBothModes) {
  const QString shared =
      "<Style id='red'><LineStyle><color>ff0000ff</color></LineStyle></Style>"
      "<Style id='big'><IconStyle><scale>3</scale></IconStyle></Style>"
      "<Style id='plain'><LineStyle><color>ff0000ff</color><width>4</width></LineStyle>"
      "<BalloonStyle><color>ff111111</color></BalloonStyle></Style>"
      "<StyleMap id='both'><Pair><key>normal</key><styleUrl>#red</styleUrl></Pair>"
      "<Pair><key>highlight</key><styleUrl>#big</styleUrl></Pair></StyleMap>"
      "<StyleMap id='calm'><Pair><key>normal</key><styleUrl>#red</styleUrl></Pair></StyleMap>"
      "<StyleMap id='nested'><Pair><key>normal</key><styleUrl>#both</styleUrl></Pair>"
      "<Pair><key>highlight</key><styleUrl>#both</styleUrl></Pair></StyleMap>"
      "<StyleMap id='own'><Pair><key>highlight</key><Style><PolyStyle><fill>0</fill></PolyStyle>"
      "</Style></Pair><Pair><key>normal</key><StyleMap><Pair><key>normal</key>"
      "<styleUrl>#big</styleUrl></Pair></StyleMap></Pair></StyleMap>"
      "<StyleMap id='self'><Pair><key>normal</key><styleUrl>#self</styleUrl></Pair>"
      "<Pair><key>highlight</key><styleUrl>#red</styleUrl></Pair></StyleMap>"
      "<StyleMap id='ring1'><Pair><key>normal</key><styleUrl>#ring2</styleUrl></Pair></StyleMap>"
      "<StyleMap id='ring2'><Pair><key>normal</key><styleUrl>#ring3</styleUrl></Pair></StyleMap>"
      "<StyleMap id='ring3'><Pair><key>normal</key><styleUrl>#ring2</styleUrl></Pair></StyleMap>"
      "<StyleMap id='lost'><Pair><key>normal</key><styleUrl>#nowhere</styleUrl></Pair>"
      "<Pair><key>highlight</key><styleUrl>http://example.com/far.kml#s</styleUrl></Pair>"
      "</StyleMap>"
      "<StyleMap id='hollow'><Pair><key>normal</key></Pair></StyleMap>"
      "<StyleMap id='empty'/>";
  const QString wide = "<Style><LineStyle><width>5</width></LineStyle></Style>";
  const QString highlight = "IconStyle.scale=1.2";
  const QString red = "LineStyle.color=ff0000ff";
  const QString big = "IconStyle.scale=3";
  const QString redAndWide = "LineStyle.color=ff0000ff LineStyle.width=5";

  struct Case {
    QString content;
    QString normal;
    QString highlighted;
  };
  const Case cases[] = {
      {"", "", highlight},
      {wide, "LineStyle.width=5", "LineStyle.width=5"},
      {"<styleUrl>#red</styleUrl>", red, red},
      {"<styleUrl>#red</styleUrl>" + wide, redAndWide, redAndWide},
      // What is given counts, also where it's the default.
      {"<styleUrl>#plain</styleUrl><Style><LineStyle><width>1</width></LineStyle></Style>",
       "BalloonStyle.color=ff111111 " + red, "BalloonStyle.color=ff111111 " + red},
      {"<styleUrl>#red</styleUrl><Style><LineStyle/></Style>", red, red},
      {"<styleUrl>#both</styleUrl>", red, big},
      {"<styleUrl>#both</styleUrl>" + wide, redAndWide, big + " LineStyle.width=5"},
      {"<styleUrl>#calm</styleUrl>", red, highlight},
      {"<styleUrl>#calm</styleUrl>" + wide, redAndWide, "LineStyle.width=5"},
      {"<styleUrl>#nested</styleUrl>", red, big},
      {"<styleUrl>#nested</styleUrl>" + wide, redAndWide, big + " LineStyle.width=5"},
      {"<styleUrl>#own</styleUrl>", big, "PolyStyle.fill=0"},
      {"<StyleMap><Pair><key>normal</key><styleUrl>#big</styleUrl></Pair></StyleMap>", big,
       highlight},
      {"<styleUrl>#red</styleUrl><StyleMap><Pair><key>normal</key><styleUrl>#big</styleUrl>"
       "</Pair></StyleMap>",
       big + ' ' + red, red},
      {"<styleUrl>#both</styleUrl><StyleMap><Pair><key>highlight</key>" + wide +
           "</Pair></StyleMap>",
       red, big + " LineStyle.width=5"},
      // Loops.
      {"<styleUrl>#self</styleUrl>", "", red},
      {"<styleUrl>#self</styleUrl>" + wide, "", redAndWide},
      {"<styleUrl>#ring1</styleUrl>", "", highlight},
      {"<styleUrl>#ring1</styleUrl>" + wide, "", "LineStyle.width=5"},
      {"<styleUrl>#red</styleUrl><StyleMap><Pair><key>normal</key><styleUrl>#ring2</styleUrl>"
       "</Pair></StyleMap>",
       "", red},
      // Targets that are missing.
      {"<styleUrl>#nowhere</styleUrl>", "failed", "failed"},
      {"<styleUrl>#nowhere</styleUrl>" + wide, "LineStyle.width=5", "LineStyle.width=5"},
      {"<styleUrl>http://example.com/far.kml#s</styleUrl>", "fetching", "fetching"},
      {"<styleUrl>#lost</styleUrl>", "failed", "fetching"},
      {"<styleUrl>#lost</styleUrl>" + wide, "LineStyle.width=5", "LineStyle.width=5"},
      {"<styleUrl>#hollow</styleUrl>", "", highlight},
      {"<styleUrl>#empty</styleUrl>", "", highlight},
      {"<styleUrl>#empty</styleUrl>" + wide, "LineStyle.width=5", "LineStyle.width=5"},
      // Built-in styles.
      {"<styleUrl>root://styles#hl</styleUrl>", highlight, highlight},
      {"<styleUrl>root://styles#other</styleUrl>", "", ""},
  };
  for (const Case& c : cases) {
    const QString placemark = "<Placemark><name>p</name>" + c.content + "</Placemark>";
    // The shared styles are there already, or still to come.
    for (const QString& content : {shared + placemark, placemark + shared}) {
      SCOPED_TRACE(c.content.toStdString() + (content.startsWith(shared) ? "" : " (late)"));
      const auto document = ReadLocal(InDocument(content));
      ASSERT_TRUE(document);
      const AbstractFeature* feature = Find(*document, "p");
      for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(c.normal, Look(*feature, kStyleNormal));
        EXPECT_EQ(c.highlighted, Look(*feature, kStyleHighlight));
      }
    }
  }
}

TEST_F(StyleSelectionTest, AStyleOfAnotherDocumentArrivesLate) {
  const auto document = ReadLocal(InDocument(
      "<StyleMap id='m'><Pair><key>normal</key><styleUrl>far.kml#s</styleUrl></Pair></StyleMap>"
      "<Placemark><name>a</name><styleUrl>far.kml#s</styleUrl></Placemark>"
      "<Placemark><name>b</name><styleUrl>#m</styleUrl>"
      "<Style><LineStyle><width>2</width></LineStyle></Style></Placemark>"));
  const AbstractFeature* a = Find(*document, "a");
  const AbstractFeature* b = Find(*document, "b");
  EXPECT_EQ("fetching", Look(*a));
  EXPECT_EQ("LineStyle.width=2", Look(*b));

  const auto far = ReadAt("/dir/far.kml",
                          InDocument("<Style id='s'><PolyStyle><fill>0</fill></PolyStyle></Style>"));
  EXPECT_EQ("PolyStyle.fill=0", Look(*a));
  EXPECT_EQ("LineStyle.width=2 PolyStyle.fill=0", Look(*b));
}

TEST_F(StyleSelectionTest, ADocumentThatIsReadAgainHasStylesOfItsOwn) {
  const QString text = InDocument(
      "<Placemark><name>p</name><styleUrl>#m</styleUrl></Placemark>"
      "<Placemark><name>q</name><styleUrl>#gone</styleUrl></Placemark>"
      "<StyleMap id='m'><Pair><key>normal</key><styleUrl>#s</styleUrl></Pair></StyleMap>"
      "<Style id='s'><LineStyle><width>%1</width></LineStyle></Style>");
  const auto first = ReadLocal(text.arg(3).replace("gone", "s"));
  const RefPtr<Style> left = Style::create(KmlId("gone", "/dir/doc.kml"), QString(), nullptr);
  left->GetLineStyle()->SetWidth(7);
  const auto second = ReadLocal(text.arg(4));
  EXPECT_EQ("LineStyle.width=3", Look(*Find(*first, "p")));
  EXPECT_EQ("LineStyle.width=4", Look(*Find(*second, "p")));
  // What isn't in the document any more is found where it was.
  EXPECT_EQ("LineStyle.width=7", Look(*Find(*second, "q")));
  EXPECT_FALSE(Find(*second, "q")->GetBit(kBitLoadFailed));
}

TEST_F(StyleSelectionTest, AChangeShowsAtOnce) {
  const auto document = ReadLocal(InDocument(
      "<Style id='s'><PolyStyle><fill>0</fill></PolyStyle></Style>"
      "<StyleMap id='n'><Pair><key>normal</key><styleUrl>#s</styleUrl></Pair></StyleMap>"
      "<StyleMap id='m'><Pair><key>normal</key><styleUrl>#n</styleUrl></Pair></StyleMap>"
      "<Placemark><name>p</name><styleUrl>#m</styleUrl>"
      "<Style><LineStyle><width>2</width></LineStyle></Style></Placemark>"
      "<Placemark><name>q</name><styleUrl>#m</styleUrl>"
      "<Style><LineStyle><width>2</width></LineStyle></Style></Placemark>"));
  AbstractFeature* p = Find(*document, "p");
  AbstractFeature* q = Find(*document, "q");
  EXPECT_EQ("LineStyle.width=2 PolyStyle.fill=0", Look(*p));
  // Neighbours with equal inline styles share the merged one.
  EXPECT_EQ(p->getRenderStyle(0), q->getRenderStyle(0));

  Style* shared = Style::find("/dir/doc.kml", "s");
  ASSERT_TRUE(shared);
  shared->GetLineStyle()->setColor(Color32(0xFF00FF00U));
  EXPECT_EQ("LineStyle.color=ff00ff00 LineStyle.width=2 PolyStyle.fill=0", Look(*p));
  p->InlineStyle()->GetLineStyle()->SetWidth(7);
  EXPECT_EQ("LineStyle.color=ff00ff00 LineStyle.width=7 PolyStyle.fill=0", Look(*p));
  EXPECT_EQ("LineStyle.color=ff00ff00 LineStyle.width=2 PolyStyle.fill=0", Look(*q));
  q->SetStyleUrl(QString());
  EXPECT_EQ("LineStyle.width=2", Look(*q));
  p->SetInlineStyleSelector(nullptr);
  EXPECT_EQ("LineStyle.color=ff00ff00 PolyStyle.fill=0", Look(*p));
}

TEST_F(StyleSelectionTest, EqualValuesThatWereNotGivenAlikeAreToldApart) {
  const auto document = ReadLocal(InDocument(
      "<Style id='s'><LineStyle><color>ff0000ff</color></LineStyle></Style>"
      "<Placemark><name>white</name><styleUrl>#s</styleUrl>"
      "<Style><LineStyle><color>ffffffff</color></LineStyle></Style></Placemark>"
      "<Placemark><name>red</name><styleUrl>#s</styleUrl><Style><LineStyle/></Style></Placemark>"));
  EXPECT_EQ("", Look(*Find(*document, "white")));
  EXPECT_EQ("LineStyle.color=ff0000ff", Look(*Find(*document, "red")));
}

TEST_F(StyleSelectionTest, AMergeKeepsWhatWasSaidAboutHotSpotAndBalloon) {
  const auto document = ReadLocal(InDocument(
      "<Style id='new'><BalloonStyle><bgColor>ff000001</bgColor></BalloonStyle></Style>"
      "<Style id='old'><BalloonStyle><color>ff000002</color></BalloonStyle></Style>"
      "<Placemark><name>a</name><styleUrl>#new</styleUrl>"
      "<Style><BalloonStyle><color>ff000002</color></BalloonStyle></Style></Placemark>"
      "<Placemark><name>b</name><styleUrl>#old</styleUrl>"
      "<Style><BalloonStyle><textColor>ff000003</textColor></BalloonStyle>"
      "<IconStyle><color>ff000004</color></IconStyle></Style></Placemark>"));
  EXPECT_EQ(Color32(0xFF000002U),
            Find(*document, "a")->getRenderStyle(0)->GetBalloonStyle()->GetBgColor());
  const Style* b = Find(*document, "b")->getRenderStyle(0);
  EXPECT_EQ(Color32(0xFF000002U), b->GetBalloonStyle()->GetBgColor());
  // Still the tip of the default pin: nobody gave a hot spot or an icon.
  EXPECT_EQ(20.0, b->GetIconStyle()->GetHotSpot().x);
  EXPECT_EQ(LegacyScreenVec::kPixels, b->GetIconStyle()->GetHotSpot().xunits);
}

TEST_F(StyleSelectionTest, TheSelectorTellsWhetherThereIsAHighlight) {
  const auto document = ReadLocal(InDocument(
      "<StyleMap id='m'><Pair><key>normal</key><Style/></Pair></StyleMap>"
      "<Placemark><name>none</name></Placemark>"
      "<Placemark><name>style</name><Style/></Placemark>"
      "<Placemark><name>map</name><styleUrl>#m</styleUrl></Placemark>"
      "<Placemark><name>merged</name><styleUrl>#m</styleUrl><Style/></Placemark>"));
  EXPECT_TRUE(Find(*document, "none")->HasSpecifiedHighlightStyle());
  EXPECT_EQ(StyleMap::GetDefaultStyleMap(), Find(*document, "none")->getRenderStyleSelector());
  EXPECT_FALSE(Find(*document, "style")->HasSpecifiedHighlightStyle());
  EXPECT_FALSE(Find(*document, "map")->HasSpecifiedHighlightStyle());
  EXPECT_TRUE(Find(*document, "merged")->HasSpecifiedHighlightStyle());
}

TEST_F(StyleSelectionTest, SnippetLinesComeFromTheListStyle) {
  const auto document = ReadLocal(InDocument(
      "<Placemark><name>p</name><Style><ListStyle><maxSnippetLines>9</maxSnippetLines>"
      "</ListStyle></Style></Placemark><Placemark><name>q</name></Placemark>"));
  EXPECT_EQ(9, Find(*document, "p")->GetMaxSnippetLines());
  EXPECT_EQ(2, Find(*document, "q")->GetMaxSnippetLines());
}

TEST_F(StyleSelectionTest, ASelectorHasManyOwners) {
  const auto document = ReadLocal(InDocument("<Placemark><name>a</name></Placemark>"
                                             "<Placemark><name>b</name></Placemark>"
                                             "<Placemark><name>c</name></Placemark>"));
  const RefPtr<Style> style = Style::create(KmlId("s", "/dir/doc.kml"), QString(), nullptr);
  AbstractFeature* a = Find(*document, "a");
  AbstractFeature* b = Find(*document, "b");
  EXPECT_EQ(nullptr, style->GetOwner(0));
  a->SetReferencedStyleSelector(style.get());
  EXPECT_EQ(a, style->GetOwner(0));
  EXPECT_EQ("#s", a->GetStyleUrl());
  b->SetReferencedStyleSelector(style.get());
  style->AddOwner(*b);
  EXPECT_EQ(2, style->GetOwnerCount());
  EXPECT_EQ(nullptr, style->SchemaObject::GetOwner(0));
  EXPECT_TRUE(style->HasOwner(*a) && style->HasOwner(*b));
  EXPECT_NE(style->GetOwner(0), style->GetOwner(1));
  EXPECT_EQ(nullptr, style->GetOwnerDocument());
  style->RemOwner(*Find(*document, "c")); // no owner
  a->SetReferencedStyleSelector(nullptr);
  EXPECT_EQ("", a->GetStyleUrl());
  EXPECT_EQ(1, style->GetOwnerCount());
  EXPECT_EQ(b, style->SchemaObject::GetOwner(0));
}

TEST_F(StyleSelectionTest, PairsTakeSelectorsByReferenceOrAsTheirOwn) {
  const RefPtr<Style> named = Style::create(KmlId("s", "/dir/doc.kml"), QString(), nullptr);
  const RefPtr<Style> nameless(new Style(KmlId(), QString()));
  const RefPtr<StyleMap> map =
      StyleMap::create(KmlId("m", "/dir/doc.kml"), QString(), *named, *nameless, nullptr);
  QString key;
  StyleMap::Pair* normal = map->GetStyleMapPair(kStyleNormal, key);
  EXPECT_EQ("normal", key);
  StyleMap::Pair* highlight = map->GetStyleMapPair(kStyleHighlight, key);
  ASSERT_TRUE(normal && highlight);
  EXPECT_EQ("#s", normal->GetStyleUrl());
  EXPECT_EQ(nullptr, normal->GetInlineStyleSelector());
  EXPECT_EQ(nameless.get(), highlight->GetInlineStyleSelector());
  EXPECT_TRUE(nameless->HasOwner(*highlight));

  map->setStyle(kStyleHighlight, *named);
  EXPECT_EQ(named.get(), highlight->GetReferencedStyleSelector());
  EXPECT_FALSE(nameless->HasOwner(*highlight));
  EXPECT_EQ(named.get(), map->InternalGetSelectedStyle(kStyleHighlight));
  EXPECT_EQ(2U, map->GetPairs().size());
}

TEST_F(StyleSelectionTest, APairKeepsItsReferenceBesideASelectorOfItsOwn) {
  for (const char* content :
       {"<styleUrl>#s</styleUrl><Style><PolyStyle><fill>0</fill></PolyStyle></Style>",
        "<Style><PolyStyle><fill>0</fill></PolyStyle></Style><styleUrl>#s</styleUrl>"}) {
    SCOPED_TRACE(content);
    auto document = ReadLocal(InDocument(
        QStringLiteral("<Placemark><name>p</name><StyleMap><Pair><key>normal</key>%1</Pair>"
                       "</StyleMap></Placemark>"
                       "<Style id='s'><LineStyle><width>3</width></LineStyle></Style>")
            .arg(content)));
    EXPECT_EQ("PolyStyle.fill=0", Look(*Find(*document, "p")));
    const QString first = Write(*document);
    EXPECT_EQ("<styleUrl>#s</styleUrl>", Element(first, "styleUrl"));
    document.reset();
    EXPECT_EQ(first, Write(*ReadLocal(first)));
  }
}

TEST_F(StyleSelectionTest, SharedStylesTravelWithTheirFeatures) {
  const QString text = InDocument(
      "<Style id='a'><LineStyle><width>2</width></LineStyle></Style>"
      "<Style id='b'><LineStyle><width>3</width></LineStyle></Style>"
      "<Style id='c'><LineStyle><width>4</width></LineStyle></Style>"
      "<StyleMap id='n'><Pair><key>normal</key><styleUrl>#b</styleUrl></Pair>"
      "<Pair><key>highlight</key><styleUrl>#m</styleUrl></Pair></StyleMap>"
      "<StyleMap id='m'><Pair><key>normal</key><styleUrl>#a</styleUrl></Pair>"
      "<Pair><key>highlight</key><styleUrl>#n</styleUrl></Pair></StyleMap>"
      "<Placemark><name>p</name><styleUrl>#m</styleUrl></Placemark>"
      "<Placemark><name>q</name><StyleMap><Pair><key>normal</key><StyleMap><Pair>"
      "<key>normal</key><styleUrl>#c</styleUrl></Pair></StyleMap></Pair></StyleMap></Placemark>"
      "<Placemark><name>r</name><styleUrl>root://styles#hl</styleUrl></Placemark>"
      "<Placemark><name>s</name><styleUrl>root://styles#unknown</styleUrl></Placemark>");
  const auto looks = [](const SchemaObject& document) {
    QStringList result;
    for (const char* name : {"p", "q", "r", "s"})
      result << Look(*Find(document, name), 0) << Look(*Find(document, name), 1);
    return result;
  };
  auto document = ReadLocal(text);
  ASSERT_TRUE(document);
  const QStringList before = looks(*document);
  const QString first = Write(*document);
  document.reset(); // else references of the next one could lead here
  document = ReadLocal(first);
  ASSERT_TRUE(document);
  EXPECT_EQ(before, looks(*document));
  EXPECT_EQ("LineStyle.width=4", Look(*Find(*document, "q")));
  EXPECT_EQ(3, first.count("<Style id="));
  // In the order of the document.
  const QRegularExpression order("id=\"a\".*id=\"b\".*id=\"c\".*id=\"n\".*id=\"m\"",
                                 QRegularExpression::DotMatchesEverythingOption);
  EXPECT_TRUE(order.match(first).hasMatch()) << first.toStdString();
  EXPECT_TRUE(first.contains("<styleUrl>root://styles#hl</styleUrl>"));
  EXPECT_TRUE(first.contains("<styleUrl>root://styles#unknown</styleUrl>"));
  EXPECT_EQ(first, Write(*document));
}

} // namespace vorrel::kestan
