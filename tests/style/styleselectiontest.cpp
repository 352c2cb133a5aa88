#include "kestan/core/schemaobjectschema.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/job.h"
#include "kestan/read/typedloadobserver.h"
#include "kestan/style/balloonstyle.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstyleschema.h"
#include "kestan/style/linestyleschema.h"
#include "kestan/style/liststyle.h"
#include "kestan/style/polystyle.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/stylemappair.h"
#include "kestan/style/stylemappairschema.h"
#include "kestan/style/stylemapschema.h"
#include "tests/style/styletest.h"
#include "tests/support/observers.h"

#include <QRegularExpression>

#include <functional>

namespace vorrel::kestan {

namespace {

/// A pair with its own selector, or a reference.
QString Pair(const QString& key, const QString& content) {
  return "<Pair><key>" + key + "</key>" + content + "</Pair>";
}

QString Url(const QString& url) { return "<styleUrl>" + url + "</styleUrl>"; }

QString Map(const QString& normal) {
  return "<StyleMap>" + Pair("normal", Url(normal)) + "</StyleMap>";
}

QString Map(const QString& id, const QString& normal, const QString& highlight = QString()) {
  return "<StyleMap id='" + id + "'>" + Pair("normal", Url(normal)) +
         (highlight.isNull() ? QString() : Pair("highlight", Url(highlight))) + "</StyleMap>";
}

} // namespace

class StyleSelectionTest : public StyleTest {};

TEST_F(StyleSelectionTest, AFeatureAnswersItsLookInBothModes) {
  const QString wide = "<Style><LineStyle><width>5</width></LineStyle></Style>";
  const QString shared =
      "<Style id='red'><LineStyle><color>ff0000ff</color></LineStyle></Style>"
      "<Style id='big'><IconStyle><scale>3</scale></IconStyle></Style>"
      "<Style id='plain'><LineStyle><color>ff0000ff</color><width>4</width></LineStyle>"
      "<BalloonStyle><color>ff111111</color></BalloonStyle></Style>"
      "<Style id='talk'><BalloonStyle><text>hi</text></BalloonStyle></Style>" +
      Map("both", "#red", "#big") + Map("calm", "#red") + Map("nested", "#both", "#both") +
      "<StyleMap id='own'>" +
      Pair("highlight", "<Style><PolyStyle><fill>0</fill></PolyStyle></Style>") +
      Pair("normal", Map("#big")) + "</StyleMap>" + "<StyleMap id='odd'>" +
      Pair("loud", Url("#plain")) + Pair("normal", Url("#red")) + Pair("normal", Url("#big")) +
      "</StyleMap>" +
      // Loops, missing targets, and none.
      Map("self", "#self", "#red") + Map("ring1", "#ring2") + Map("ring2", "#ring3") +
      Map("ring3", "#ring2") + Map("lost", "#nowhere", "http://example.com/far.kml#s") +
      Map("hollow", "") + "<StyleMap id='empty'/>" +
      // Through another document.
      Map("toFar", "far.kml#s", "far.kml#m") + Map("around", "far.kml#back", "#red") +
      "<Placemark><Style id='inline'><IconStyle><scale>3</scale></IconStyle></Style></Placemark>";
  const QString far = "<Style id='s'><PolyStyle><fill>0</fill></PolyStyle></Style>" +
                      Map("m", "#s", "doc.kml#red") + Map("back", "doc.kml#around");

  const QString red = "LineStyle.color=ff0000ff";
  const QString width = "LineStyle.width=5";
  struct Case {
    QString content;
    QString looks; ///< Normal and highlighted, or one for both.
    /// The same once the other document is there; null where nothing changes.
    QString farLooks = QString();
  };
  const Case cases[] = {
      {"", " | IconStyle.scale=1.2"},
      {wide, width},
      {Url("#red"), red},
      {Url("doc.kml#red"), red},
      {Url("#inline"), "IconStyle.scale=3"},
      {Url("#big") + Url("#red"), red},
      {Url("#red") + Url(""), " | IconStyle.scale=1.2"},
      {Url("#red") + wide, red + " LineStyle.width=5"},
      // What is given counts, also where it's the default.
      {Url("#plain") + "<Style><LineStyle><width>1</width></LineStyle></Style>",
       "BalloonStyle.color=ff111111 LineStyle.color=ff0000ff"},
      {Url("#red") + "<Style><LineStyle><color>ffffffff</color></LineStyle></Style>", ""},
      {Url("#red") + "<Style><LineStyle/></Style>", red},
      {Url("#talk"), "BalloonStyle.text=hi"},
      {Url("#talk") + "<Style><BalloonStyle><text/></BalloonStyle></Style>", ""},
      {"<Style><LabelStyle><gx:text></gx:text></LabelStyle></Style>", "LabelStyle.text="},
      // Maps.
      {Url("#both"), red + " | IconStyle.scale=3"},
      {Url("#both") + wide, red + " LineStyle.width=5 | IconStyle.scale=3 LineStyle.width=5"},
      {Url("#calm"), red + " | IconStyle.scale=1.2"},
      {Url("#calm") + wide, red + " LineStyle.width=5 | LineStyle.width=5"},
      {Url("#nested"), red + " | IconStyle.scale=3"},
      {Url("#own"), "IconStyle.scale=3 | PolyStyle.fill=0"},
      {Url("#odd"), red + " | IconStyle.scale=1.2"},
      {Map("#big"), "IconStyle.scale=3 | IconStyle.scale=1.2"},
      {Url("#red") + Map("#big"), "IconStyle.scale=3 LineStyle.color=ff0000ff | " + red},
      {Url("#both") + "<StyleMap>" + Pair("highlight", wide) + "</StyleMap>",
       red + " | IconStyle.scale=3 LineStyle.width=5"},
      {"<StyleMap>" + Pair("normal", Url("#red") + wide) + "</StyleMap>",
       "LineStyle.width=5 | IconStyle.scale=1.2"},
      // Loops.
      {Url("#self"), " | " + red},
      {Url("#ring1"), " | IconStyle.scale=1.2"},
      {Url("#red") + Map("#ring2"), " | " + red},
      // Targets that are missing.
      {Url("#nowhere"), "failed"},
      {Url("#nowhere") + wide, width},
      {Url("http://example.com/far.kml#s"), "fetching"},
      {Url("#lost"), "failed | fetching"},
      {Url("#empty"), " | IconStyle.scale=1.2"},
      {Url("#empty") + "<StyleMap/>", ""},
      {Url("#calm") + Map("#big"), "IconStyle.scale=3 LineStyle.color=ff0000ff | "},
      // Targets that come later.
      {Url("far.kml#s"), "fetching", "PolyStyle.fill=0"},
      {Url("#toFar"), "fetching", "PolyStyle.fill=0 | " + red},
      {Url("#toFar") + wide, width,
       "LineStyle.width=5 PolyStyle.fill=0 | LineStyle.color=ff0000ff LineStyle.width=5"},
      {Url("#around"), "fetching | " + red, " | " + red},
      {Url("far.kml#s") + Url("#red"), red},
      {Url("#red") + "<StyleMap>" + Pair("normal", Url("far.kml#s") + Url("far.kml#back")) +
           "</StyleMap>",
       red, " | " + red},
      {"<StyleMap>" +
           Pair("normal", Map("root://styles#default+nicon=http://h/n.png+hicon=http://h/h.png")) +
           "</StyleMap>",
       "icon=http://h/n.png | IconStyle.scale=1.2"},
      // Built-in styles, and some that are made from their id.
      {Url("root://styles#hl"), "IconStyle.scale=1.2"},
      {Url("root://styles#other"), ""},
      {Url("root://styles#?iconId=0"), "icon="},
      {Url("root://styles#hl?iconId=http://h/i.png?x=0"),
       "IconStyle.scale=1.2 icon=http://h/i.png?x=0&w=32&h=32 | "
       "IconStyle.scale=1.32 LabelStyle.scale=1.1 icon=http://h/i.png?x=0&y=32&w=32&h=32"},
      {Url("root://styles#default+nicon=http://h/n.png+hicon=http://h/n.png") + wide,
       "LineStyle.width=5 icon=http://h/n.png"},
  };
  const auto both = [](const QString& looks) {
    return looks.contains('|') ? looks : looks + " | " + looks;
  };
  const auto looks = [](const SchemaObject& document) {
    const AbstractFeature* feature = Find(document, "p");
    return Look(*feature, kStyleNormal) + " | " + Look(*feature, kStyleHighlight);
  };
  for (const Case& c : cases) {
    const QString placemark = "<Placemark><name>p</name>" + c.content + "</Placemark>";
    // The shared styles are there already, or still to come.
    for (const QString& content : {shared + placemark, placemark + shared}) {
      SCOPED_TRACE(c.content.toStdString() + (content.startsWith(shared) ? "" : " (late)"));
      const QString nearLooks = both(c.looks);
      const QString farLooks = both(c.farLooks.isNull() ? c.looks : c.farLooks);
      auto document = ReadLocal(InDocument(content));
      EXPECT_EQ(nearLooks, looks(*document));
      EXPECT_EQ(nearLooks, looks(*document)); // from what the first answer left behind
      const QString alone = Write(*document);
      auto other = ReadAt("/dir/far.kml", InDocument(far));
      EXPECT_EQ(farLooks, looks(*document));
      const QString together = Write(*document);
      document.reset(); // else what is read next may refer to it
      other.reset();

      for (const QString& text : {alone, together}) {
        document = ReadLocal(text);
        EXPECT_EQ(text == alone ? nearLooks : farLooks, looks(*document));
        EXPECT_EQ(text, Write(*document));
        document.reset();
      }
    }
  }
}

TEST_F(StyleSelectionTest, ADocumentThatIsReadAgainHasStylesOfItsOwn) {
  const QString text =
      InDocument("<Placemark><name>p</name><styleUrl>#m</styleUrl></Placemark>"
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

// A value that an object has anyway, once it's given, hides what a shared style says.
TEST_F(StyleSelectionTest, WhatIsGivenOrTakenBackShowsAtOnce) {
  const QString shared = "<LineStyle><width>4</width></LineStyle>"
                         "<IconStyle><scale>3</scale><heading>45</heading><Icon><href>i.png</href>"
                         "<gx:x>8</gx:x></Icon></IconStyle>"
                         "<PolyStyle><fill>0</fill></PolyStyle>"
                         "<ListStyle><maxSnippetLines>7</maxSnippetLines></ListStyle>"
                         "<BalloonStyle><bgColor>ff000001</bgColor></BalloonStyle>";
  const auto document = ReadLocal(InDocument(
      "<Style id='s'>" + shared + "</Style>" + Map("m", "#n") + Map("n", "#s") +
      "<Placemark><name>p</name><styleUrl>#m</styleUrl><Style/></Placemark>"
      "<Placemark><name>q</name><styleUrl>#m</styleUrl><StyleMap><Pair><key>normal</key><Style/>"
      "</Pair></StyleMap></Placemark>"));
  QString key;
  const auto* map = static_cast<const StyleMap*>(Find(*document, "q")->GetInlineStyleSelector());
  Style* const styles[] = {
      Find(*document, "p")->InlineStyle(),
      static_cast<Style*>(map->GetStyleMapPair(kStyleNormal, key)->GetStyleSelector())};
  const auto& line = LineStyleSchema::GetSingleton();
  const auto& icon = IconStyleSchema::GetSingleton();
  struct Edit {
    const char* gone; ///< What doesn't show any more.
    std::function<void(Style&)> give;
    std::function<void(Style&)> takeBack;
  };
  const Edit edits[] = {
      {"LineStyle.width=4", [](Style& s) { s.GetLineStyle()->SetWidth(1); },
       [&](Style& s) { s.GetLineStyle()->ClearField(line.width); }},
      {"LineStyle.width=4", [](Style& s) { s.GetLineStyle()->SetWidth(1); },
       [](Style& s) { s.UnspecifyRedundantFields(*Style::GetDefaultStyle()); }},
      {"LineStyle.width=4", [](Style& s) { s.GetLineStyle()->SetWidth(1); },
       [](Style& s) { s._setLineStyle(nullptr); }},
      {"IconStyle.scale=3", [](Style& s) { s.GetIconStyle()->SetScale(1); },
       [&](Style& s) { s.GetIconStyle()->ClearField(icon.scale); }},
      {"IconStyle.heading=45", [](Style& s) { s.GetIconStyle()->SetHeading(0); },
       [](Style& s) { s.GetIconStyle()->CleanupHeadingAndHeadingModeBits(); }},
      {"IconStyle.heading=45",
       [&](Style& s) { s.GetIconStyle()->SetFieldSpecified(icon.heading.GetMaskBit(), true); },
       [&](Style& s) { s.GetIconStyle()->SetFieldSpecified(icon.heading.GetMaskBit(), false); }},
      {"icon=i.png", [](Style& s) { s.GetIconStyle()->GetOrCreateIcon()->SetHref("j.png"); },
       [&](Style& s) { s.GetIconStyle()->ClearField(icon.icon); }},
      {"PolyStyle.fill=0", [](Style& s) { s.GetPolyStyle()->SetFill(true); },
       [](Style& s) { s._setPolyStyle(nullptr); }},
      {"ListStyle.maxSnippetLines=7", [](Style& s) { s.GetListStyle()->SetMaxSnippetLines(2); },
       [](Style& s) { s._setListStyle(nullptr); }},
      {"BalloonStyle.bgColor=ff000001",
       [](Style& s) { s.GetBalloonStyle()->SetBgColor(Color32()); },
       [](Style& s) { s._setBalloonStyle(nullptr); }},
  };
  for (std::size_t i = 0; i < std::size(styles); ++i) {
    const AbstractFeature& feature = *Find(*document, i == 0 ? "p" : "q");
    const QString former = Look(feature);
    for (const Edit& edit : edits) {
      SCOPED_TRACE(edit.gone);
      EXPECT_TRUE(former.contains(edit.gone)) << former.toStdString();
      edit.give(*styles[i]);
      EXPECT_FALSE(Look(feature).contains(edit.gone)) << Look(feature).toStdString();
      edit.takeBack(*styles[i]);
      EXPECT_EQ(former, Look(feature));
    }
  }
  EXPECT_FALSE(styles[0]->GetLineStyle()->ClearField(icon.scale));
}

// Nothing tells where their images are, but they are two.
TEST_F(StyleSelectionTest, RelativeIconsOfADocumentWithoutAUrlDiffer) {
  const QString placemark =
      "<Placemark><name>%1</name><styleUrl>#s</styleUrl><Style><IconStyle><Icon><href>%1.png</href>"
      "%2</Icon></IconStyle></Style></Placemark>";
  for (const char* url : {"", "/dir/doc.kml"}) {
    const auto document = ReadAt(
        url, InDocument("<Style id='s'><LineStyle><width>2</width></LineStyle></Style>" +
                        placemark.arg("a", "") + placemark.arg("b", "") + placemark.arg("c", "") +
                        placemark.arg("b", "<gx:x>8</gx:x>").replace("<name>b", "<name>d")));
    for (const char* name : {"a", "b", "c"})
      EXPECT_EQ(QStringLiteral("LineStyle.width=2 icon=%1.png").arg(name),
                Look(*Find(*document, name)));
    Style& a = *Find(*document, "a")->InlineStyle();
    Style& b = *Find(*document, "b")->InlineStyle();
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b.UnspecifyRedundantFields(a));
    EXPECT_TRUE(a.UnspecifyRedundantFields(*a.Clone()));
    const auto made = Style::create(KmlId("made", url), url, nullptr);
    made->GetIconStyle()->GetOrCreateIcon()->SetHref("b.png");
    EXPECT_TRUE(*made == b);
    made->GetIconStyle()->GetIcon()->SetHref("d.png");
    EXPECT_FALSE(*made == b);
  }
}

TEST_F(StyleSelectionTest, NeighboursWithEqualStylesShareTheirLookUntilOneChanges) {
  const QString placemark = "<Placemark><name>%1</name><styleUrl>#s</styleUrl>"
                            "<Style><LineStyle><width>2</width></LineStyle></Style></Placemark>";
  const auto document =
      ReadLocal(InDocument("<Style id='s'><PolyStyle><fill>0</fill></PolyStyle></Style>" +
                           placemark.arg("p") + placemark.arg("q")));
  AbstractFeature* p = Find(*document, "p");
  AbstractFeature* q = Find(*document, "q");
  EXPECT_EQ(p->getRenderStyle(0), q->getRenderStyle(0));
  p->InlineStyle()->GetLineStyle()->SetWidth(7);
  EXPECT_EQ("LineStyle.width=7 PolyStyle.fill=0", Look(*p));
  EXPECT_EQ("LineStyle.width=2 PolyStyle.fill=0", Look(*q));
  q->SetStyleUrl(QString());
  EXPECT_EQ("LineStyle.width=2", Look(*q));
  p->SetInlineStyleSelector(nullptr);
  EXPECT_EQ("PolyStyle.fill=0", Look(*p));
}

// Icons that show the same may still bring different things into a merge.
TEST_F(StyleSelectionTest, NeighboursShareALookOnlyWhereTheirStylesSayTheSame) {
  const auto document = ReadLocal(InDocument(
      "<Style id='s'><IconStyle><Icon><href>http://h/i.png</href></Icon></IconStyle></Style>"
      "<Placemark><name>p</name><styleUrl>#s</styleUrl><Style><IconStyle><Icon>"
      "<refreshMode>onInterval</refreshMode></Icon></IconStyle></Style></Placemark>"
      "<Placemark><name>q</name><styleUrl>#s</styleUrl><Style><IconStyle><Icon>"
      "<refreshMode>onExpire</refreshMode></Icon></IconStyle></Style></Placemark>"));
  const auto mode = [&](const char* name) {
    return Find(*document, name)->getRenderStyle(0)->GetIconStyle()->GetIcon()->GetRefreshMode();
  };
  EXPECT_EQ(Icon::kOnInterval, mode("p"));
  EXPECT_EQ(Icon::kOnExpire, mode("q"));
}

TEST_F(StyleSelectionTest, AMergeKeepsWhatWasSaidAboutHotSpotAndBalloon) {
  const auto document = ReadLocal(
      InDocument("<Style id='new'><BalloonStyle><bgColor>ff000001</bgColor></BalloonStyle></Style>"
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

TEST_F(StyleSelectionTest, AStyleThatIsRenamedIsFoundByThoseThatWaitForIt) {
  const auto document = ReadLocal(
      InDocument("<Placemark><name>p</name><styleUrl>#s</styleUrl></Placemark><Placemark><name>q"
                 "</name><styleUrl>#old</styleUrl></Placemark>"
                 "<Style id='old'><LineStyle><width>2</width></LineStyle></Style>"));
  EXPECT_EQ("failed", Look(*Find(*document, "p")));
  SchemaObjectSchema::GetSingleton().id.SetTypedObject(*Style::find("/dir/doc.kml", "old"), "s");
  EXPECT_EQ("LineStyle.width=2", Look(*Find(*document, "p")));
  EXPECT_EQ("LineStyle.width=2", Look(*Find(*document, "q")));
}

TEST_F(StyleSelectionTest, WithoutLoadersAReferenceFailsOnceItsDocumentIsThere) {
  class StopsAlways final : public IJobContinuator {
  public:
    bool ShouldContinue() const override { return false; }
  };
  FakeLoader loader;
  const auto document = ReadLocal(
      InDocument("<Placemark><name>p</name><styleUrl>far.kml#no</styleUrl></Placemark>"
                 "<Placemark><name>q</name><styleUrl>other.kml#s</styleUrl></Placemark>"
                 "<Placemark><name>r</name><styleUrl>far.kml#late</styleUrl></Placemark>"));
  const auto far = ReadAt("/dir/far.kml", InDocument("<Style id='s'/>"));
  loader.ended += "/dir/far.kml";
  const auto update = [] {
    return TypedLoadObserver<StyleSelector>::UpdateAll(
        ThreadContext::GetMain()->styleLoadObservers.get(), StopsAlways(), nullptr);
  };
  int stops = 0;
  while (update())
    ASSERT_LT(++stops, 3);
  EXPECT_EQ("failed", Look(*Find(*document, "p")));
  EXPECT_EQ("fetching", Look(*Find(*document, "q")));
  EXPECT_EQ("failed", Look(*Find(*document, "r")));
  Find(*document, "p")->SetStyleUrl("far.kml#never"); // a new reference to it
  while (update()) {
  }
  EXPECT_EQ("failed", Look(*Find(*document, "p")));
}

TEST_F(StyleSelectionTest, TheSelectorTellsWhetherThereIsAHighlight) {
  const auto document = ReadLocal(
      InDocument("<StyleMap id='m'><Pair><key>normal</key><Style/></Pair></StyleMap>"
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

TEST_F(StyleSelectionTest, ASelectorHasManyOwners) {
  const RefPtr<Style> style = Style::create(KmlId("s", "/dir/doc.kml"), QString(), nullptr);
  const auto a = Placemark::CreatePlacemark();
  const auto b = Placemark::CreatePlacemark();
  EXPECT_EQ(nullptr, style->GetOwner(0));
  a->SetReferencedStyleSelector(style.get());
  EXPECT_EQ(a.get(), style->GetOwner(0));
  b->SetReferencedStyleSelector(style.get());
  style->AddOwner(*b);
  EXPECT_EQ(2, style->GetOwnerCount());
  EXPECT_EQ(nullptr, style->SchemaObject::GetOwner(0));
  EXPECT_TRUE(style->HasOwner(*a) && style->HasOwner(*b));
  EXPECT_NE(style->GetOwner(0), style->GetOwner(1));
  EXPECT_EQ(nullptr, style->GetOwnerDocument());
  style->RemOwner(*Placemark::CreatePlacemark()); // no owner
  a->SetReferencedStyleSelector(nullptr);
  EXPECT_EQ("", a->GetStyleUrl());
  EXPECT_EQ(b.get(), style->SchemaObject::GetOwner(0));
}

TEST_F(StyleSelectionTest, PairsTakeSelectorsByReferenceOrAsTheirOwn) {
  const RefPtr<Style> named = Style::create(KmlId("s", "/dir/doc.kml"), QString(), nullptr);
  const RefPtr<Style> nameless(new Style(KmlId(), QString()));
  const RefPtr<StyleMap> map =
      StyleMap::create(KmlId("m", "/dir/doc.kml"), QString(), *named, *nameless, nullptr);
  QString key;
  StyleMap::Pair* normal = map->GetStyleMapPair(kStyleNormal, key);
  StyleMap::Pair* highlight = map->GetStyleMapPair(kStyleHighlight, key);
  ASSERT_TRUE(normal && highlight);
  EXPECT_EQ("highlight", key);
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

TEST_F(StyleSelectionTest, NoMapBecomesAPartOfItself) {
  const auto document = Read<Document>(
      "<Document><StyleMap id='m'><Pair><key>normal</key><StyleMap><Pair><key>normal</key>"
      "<Style/></Pair></StyleMap></Pair></StyleMap></Document>");
  auto& outer = static_cast<StyleMap&>(*document->GetStyleSelector(0));
  StyleMap::Pair& outerPair = *outer.GetPairs()[0];
  auto& inner = static_cast<StyleMap&>(*outerPair.GetInlineStyleSelector());
  StyleMap::Pair& innerPair = *inner.GetPairs()[0];
  const QString text = Write(*document);
  const auto& own = StyleMapPairSchema::GetSingleton().styleSelector;
  const auto& pairs = StyleMapSchema::GetSingleton().pairs;
  EXPECT_FALSE(own.set(innerPair, &outer, 0));
  EXPECT_FALSE(own.set(innerPair, &inner, 0));
  EXPECT_FALSE(pairs.add(inner, &outerPair));
  EXPECT_EQ(text, Write(*document));

  const RefPtr<StyleMap> nameless(new StyleMap(KmlId(), QString()));
  const RefPtr<StyleMap::Pair> pair(new StyleMap::Pair(KmlId(), QString()));
  pairs.add(*nameless, pair.get());
  pair->SetStyleSelector(nameless.get());
  EXPECT_EQ(nullptr, pair->GetStyleSelector());
  EXPECT_TRUE(pairs.add(outer, pair.get())); // elsewhere it may be
}

TEST_F(StyleSelectionTest, SharedStylesTravelOnceAndInTheirOrder) {
  const auto document = ReadLocal(InDocument(
      "<Style id='a'/><Style id='b'/><Style id='c'/>" + Map("n", "#b", "#m") +
      Map("m", "#a", "#n") +
      "<Placemark><styleUrl>#m</styleUrl></Placemark><Placemark><styleUrl>#a</styleUrl></Placemark>"
      "<Placemark><styleUrl>root://styles#hl</styleUrl></Placemark>"));
  QString ids;
  const QString text = Write(*document);
  QRegularExpressionMatchIterator match =
      QRegularExpression("<Style(?:Map)? id=\"(\\w)\"").globalMatch(text);
  while (match.hasNext())
    ids += match.next().captured(1);
  EXPECT_EQ("abcnm", ids);
  EXPECT_TRUE(text.contains("<styleUrl>root://styles#hl</styleUrl>"));
}

} // namespace vorrel::kestan
