#include "kestan/style/icon.h"

#include "kestan/core/library.h"
#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/resources.h"
#include "kestan/link/viewparams.h"
#include "kestan/style/iconfactory.h"
#include "kestan/style/iconpalette.h"
#include "tests/support/kmltest.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

constexpr char kServer[] = "http://maps.vorrel.com/mapfiles/kml/";

QString Server(const char* rest) { return QLatin1String(kServer) + QLatin1String(rest); }

/// x,y,w,h as text.
QString Rectangle(const Icon& icon) {
  return QStringLiteral("%1,%2,%3,%4")
      .arg(icon.GetX())
      .arg(icon.GetY())
      .arg(icon.GetW())
      .arg(icon.GetH());
}

} // namespace

class IconTest : public KmlTest {
protected:
  RefPtr<Icon> ReadIcon(const QString& content) {
    // A child, since the reader translates older forms of children only.
    const auto folder = Read<Folder>(
        QStringLiteral("<Folder xmlns:gx=\"http://www.vorrel.com/kml/ext/2.2\"><Icon>%1</Icon>"
                       "</Folder>")
            .arg(content));
    return Cast<Icon>(folder->GetIcon(), content);
  }
  /// Copied, and written and read again, an icon shows the same.
  void ExpectStable(const Icon& icon) {
    const auto copy = icon.clone(true, nullptr);
    EXPECT_EQ(icon.CreateIconKey(), static_cast<Icon&>(*copy).CreateIconKey());
    EXPECT_EQ(icon.GetAbsoluteUrl(), static_cast<Icon&>(*copy).GetAbsoluteUrl());
    const QString first = Element(Write(icon), "Icon");
    const auto again = ReadIcon(QString(first).remove("<Icon>\n").remove("</Icon>"));
    EXPECT_EQ(icon.CreateIconKey(), again->CreateIconKey());
    EXPECT_EQ(first, Element(Write(*again), "Icon"));
  }
};

TEST_F(IconTest, ImagesAreToldByTheFormOfTheirUrl) {
  struct Case {
    QString href;
    int texId;
    QString rectangle;
    QString url = QString(); // what is fetched; null: the reference
    QString key = QString(); // null: what is fetched
  };
  const QString sunny = Server("shapes/sunny.png");
  const Case cases[] = {
      {"", Icon::kNoImage, "0,0,-1,-1"},
      {"?", Icon::kNoImage, "0,0,-1,-1", ""},
      {"http://h/a.png", Icon::kImageFile, "0,0,-1,-1"},
      {"http://h/a.png?x=5&y=6&w=7&h=8", Icon::kImageFile, "5,6,7,8"},
      {"http://h/a.png?max=5&x=z&x=9&x=4&w=-3&", Icon::kImageFile, "9,0,-1,32",
       "http://h/a.png?max=5&x=z&x=9&x=4&w=-3"},
      {"http://h/a.png?", Icon::kImageFile, "0,0,-1,-1", "http://h/a.png"},
      {"file:///a.png?a=b&x=32&c&y=z", Icon::kImageFile, "32,0,32,32", QString(), "file:///a.png"},
      {"http://h/flatfile?a", Icon::kFlatfileImage, "0,0,-1,-1"},
      {"root://icons/palette-3.png?x=64&y=32&w=32&h=32", Icon::kBuiltInImage, "64,32,-1,-1",
       Server("pal3/icon50.png"), sunny},
      {Server("pal3/icon50.png"), Icon::kBuiltInImage, "64,32,-1,-1", Server("pal3/icon50.png"),
       sunny},
      {sunny, Icon::kBuiltInImage, "0,0,-1,-1"},
      {Server("pal2/icon63.png"), Icon::kBuiltInImage, "224,0,-1,-1", Server("pal2/icon63.png"),
       Server("shapes/dining.png")},
      {"root://icons/bitmap-4.png?x=32&y=96&w=32&h=32", Icon::kBuiltInImage, "32,64,-1,-1",
       Server("pal4/icon41.png"), sunny},
      {"root://icons/bitmap-4.png?x=999&y=999", Icon::kBuiltInImage, "224,128,-1,-1",
       Server("pal4/icon31.png"), Server("paddle/pause.png")},
      {"root://icons/bitmap-z.png", Icon::kUnknownImage, "0,0,-1,-1"},
      {"root://icons/palette-", Icon::kUnknownImage, "0,0,-1,-1"},
      {"root://icons/palette-3.png?x=320", Icon::kUnknownImage, "320,0,32,32"},
      {Server("pal9/icon5.png"), Icon::kUnknownImage, "160,224,-1,-1"},
      {Server("pal2/icon64.png"), Icon::kUnknownImage, "0,0,-1,-1"},
      {Server("pal2/icon99999999999.png"), Icon::kUnknownImage, "0,0,-1,-1"},
      {Server("pal"), Icon::kUnknownImage, "0,0,-1,-1"},
      {Server("a.b.png"), Icon::kImageFile, "0,0,-1,-1"},
      {Server("shapes/none.png"), Icon::kImageFile, "0,0,-1,-1"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.href.toStdString());
    const auto icon = Icon::create(c.href);
    EXPECT_EQ(c.texId, icon->GetTexId());
    EXPECT_EQ(c.rectangle, Rectangle(*icon));
    const QString url = c.url.isNull() ? c.href : c.url;
    EXPECT_EQ(url, icon->GetAbsoluteUrl());
    EXPECT_EQ(c.key.isNull() ? url : c.key, icon->GetKeyText());

    const auto read = ReadIcon("<href>" + c.href.toHtmlEscaped() + "</href>");
    EXPECT_EQ(icon->CreateIconKey(), read->CreateIconKey());
    ExpectStable(*read);
  }
}

TEST_F(IconTest, TheOrderOfTheElementsDoesNotCount) {
  const QStringList sets[] = {
      {"<href>root://icons/palette-3.png</href>", "<gx:x>64</gx:x>", "<gx:y>32</gx:y>",
       "<gx:w>32</gx:w>", "<gx:h>32</gx:h>"},
      {"<href>root://icons/bitmap-4.png</href>", "<gx:x>32</gx:x>", "<gx:y>96</gx:y>"},
      {"<href>root://icons/bitmap-4.png?x=64</href>", "<gx:y>96</gx:y>", "<gx:w>16</gx:w>"},
      {"<href>a.png?x=32</href>", "<gx:x>0</gx:x>", "<httpQuery>a=b</httpQuery>"},
      {"<href>file:///a.png?x=32&amp;a=b</href>", "<gx:x>0</gx:x>", "<gx:y>64</gx:y>"},
      {"<href>a.png?a=b</href>", "<gx:y>64</gx:y>", "<gx:w>16</gx:w>"},
      {"<href>http://maps.vorrel.com/mapfiles/kml/pal3/icon50.png</href>", "<gx:x>0</gx:x>",
       "<gx:w>5</gx:w>"},
      {"<href>root://icons/palette-3.png</href>", "<x>64</x>", "<y>32</y>", "<gx:y>0</gx:y>"},
  };
  for (QStringList elements : sets) {
    std::sort(elements.begin(), elements.end());
    IconKey key;
    QString url;
    QString text;
    do {
      SCOPED_TRACE(elements.join(QString()).toStdString());
      const auto icon = ReadIcon(elements.join(QString()));
      if (key.text.isNull()) {
        key = icon->CreateIconKey();
        url = icon->GetAbsoluteUrl();
        text = Write(*icon);
      }
      EXPECT_EQ(url, icon->GetAbsoluteUrl());
      EXPECT_TRUE(key == icon->CreateIconKey()) << Rectangle(*icon).toStdString();
      EXPECT_EQ(text, Write(*icon));
    } while (std::next_permutation(elements.begin(), elements.end()));
  }
}

TEST_F(IconTest, ManyChangesOfALongUrlCostInProportion) {
  // A look at the whole URL for each would take minutes.
  constexpr int kCount = 30000;
  for (const char* base : {"http://h/a?", "file:///a?", "root://icons/palette-3.png?"}) {
    const int x = base[0] == 'r' ? 0 : 1; // a palette goes by whole tiles
    const auto icon =
        ReadIcon("<href>" + QLatin1String(base) + QString("x=1&amp;").repeated(kCount) + "</href>" +
                 QString("<gx:y>0</gx:y>").repeated(kCount) +
                 QString("<viewBoundScale>2</viewBoundScale>").repeated(kCount));
    ASSERT_TRUE(icon);
    EXPECT_EQ(x, icon->GetX());
  }
  // So would a long query, put behind each of many references.
  for (const QString& base : {QStringLiteral("http://h/a"), Server("pal2/icon12.png")}) {
    const QString query = QString("a").repeated(kCount);
    const auto icon =
        ReadIcon("<viewFormat>" + query + "</viewFormat>" +
                 QStringLiteral("<href>%1</href><href>b.png</href>").arg(base).repeated(kCount) +
                 "<href>" + base + "</href>");
    ASSERT_TRUE(icon);
    EXPECT_EQ(base + "?" + query, icon->GetAbsoluteUrl());
    EXPECT_EQ(base + "?" + query, icon->GetKeyText());
  }
}

TEST_F(IconTest, TheRectangleComesBackWhateverTheQuerySays) {
  const std::pair<const char*, const char*> cases[] = {
      {"<href>http://h/a.png?x=5&amp;y=6</href><gx:x>0</gx:x><gx:h>-1</gx:h>", "0,6,32,-1"},
      {"<href>a.png?b=c</href><gx:y>9</gx:y><gx:w>-1</gx:w>", "0,9,-1,32"},
      {"<href>a.png?x=0</href><x>3</x>", "0,0,-1,-1"},
      {"<href>a.png</href><x>0</x>", "0,0,-1,-1"},
      {"<href>file:///a.png??x=7</href>", "7,0,32,32"},
      {"<href>file:///a.png?x=7?y=8</href>", "0,8,32,32"},
      {"<href>file:///a.png?b&amp;x=7&amp;&amp;</href>", "7,0,32,32"},
      {"<href>a.png?x=7&amp;k=1</href><gx:x>3</gx:x>", "3,0,32,32"},
      {"<href>root://icons/palette-3.png</href><gx:y>36</gx:y>", "0,32,-1,-1"},
      {"<href>root://icons/palette-1.png</href><gx:x>32</gx:x>", "32,0,-1,-1"},
  };
  for (const auto& [content, rectangle] : cases) {
    SCOPED_TRACE(content);
    const auto icon = ReadIcon(content);
    EXPECT_EQ(rectangle, Rectangle(*icon));
    // A local reference is the text as it was, but for separators at its end.
    if (QString(content).contains("file:")) {
      EXPECT_EQ(Element(QString(content).remove("&amp;&amp;"), "href"),
                Element(Write(*icon), "href"));
    }
    ExpectStable(*icon);
  }
}

TEST_F(IconTest, ALaterChangeLeavesNothingBehind) {
  const auto icon = Icon::create("root://icons/palette-3.png?x=64&y=32");
  ASSERT_TRUE(icon->IsWholeImage());
  EXPECT_TRUE(icon->HasSpecifiedX());
  icon->SetHref("http://h/a.png");
  EXPECT_EQ("0,0,-1,-1", Rectangle(*icon));
  EXPECT_FALSE(icon->HasSpecifiedX());
  EXPECT_FALSE(icon->GetHotSpotOverride());
  icon->SetW(16);
  icon->SetH(-5);
  EXPECT_EQ("0,0,16,-1", Rectangle(*icon));
  EXPECT_TRUE(icon->HasSpecifiedW() && icon->HasSpecifiedH());
  icon->SetHref("root://icons/palette-2.png");
  EXPECT_EQ("0,0,-1,-1", Rectangle(*icon));
  icon->SetHref("http://h/a.png");
  EXPECT_EQ("0,0,16,-1", Rectangle(*icon));
}

TEST_F(IconTest, OlderElementsFillInAndStay) {
  const auto icon =
      ReadIcon("<href>a.png</href><x>10</x><gx:x>20</gx:x><y>30</y><w>-7</w><h>8</h>");
  ASSERT_TRUE(icon);
  EXPECT_EQ("20,30,-1,8", Rectangle(*icon));
  const QString text = Write(*icon);
  EXPECT_EQ("<x>10</x>", Element(text, "x"));
  EXPECT_EQ("<gx:x>20</gx:x>", Element(text, "gx:x"));
  EXPECT_EQ("<gx:y>30</gx:y>", Element(text, "gx:y"));
  EXPECT_EQ("<w>-7</w>", Element(text, "w"));
  EXPECT_EQ("0,0,-1,-1", Rectangle(*ReadIcon("<href>a.png</href><gx:w>-7</gx:w><gx:h>-2</gx:h>")));
}

TEST_F(IconTest, TheOlderFormOfTheElementIsTheUrlAndATextureNameIsNotResolved) {
  EXPECT_EQ("http://h/a.png", ReadIcon("http://h/a.png")->GetUrl());
  const auto icon = Icon::CreateFromTextureName("crosshair");
  EXPECT_EQ("crosshair", icon->GetAbsoluteUrl());
  EXPECT_EQ("crosshair", icon->GetKeyText());
  EXPECT_EQ("crosshair", static_cast<Icon&>(*icon->clone(true, nullptr)).GetKeyText());
  const auto read = ReadIcon("<href>crosshair</href>");
  EXPECT_EQ("http://example.com/dir/crosshair", read->GetKeyText());
}

TEST_F(IconTest, TheUrlFollowsTheViewAndIsWrittenWithoutIt) {
  const auto icon =
      ReadIcon("<href>http://h/a.png</href><viewRefreshMode>onStop</viewRefreshMode>");
  ASSERT_TRUE(icon);
  ViewParams view;
  view.east = 0.5;
  icon->setViewParams(view);
  EXPECT_EQ("http://h/a.png?BBOX=0,0,90,0", icon->GetAbsoluteUrl());
  EXPECT_EQ(icon->GetAbsoluteUrl(), icon->GetKeyText());
  EXPECT_EQ("<href>http://h/a.png</href>", Element(Write(*icon), "href"));
  const auto copy = icon->clone(true, nullptr);
  EXPECT_EQ(icon->GetAbsoluteUrl(), static_cast<Icon&>(*copy).GetAbsoluteUrl());
}

TEST_F(IconTest, AFlatfileImageIsWrittenAsTheHalfThatIsShown) {
  const std::pair<const char*, const char*> cases[] = {
      {"<href>flatfile://a_nh.png</href>", "<href>flatfile://a_n.png</href>"},
      {"<href>flatfile://a_nh.png</href><gx:y>32</gx:y>", "<href>flatfile://a_h.png</href>"},
      {"<href>flatfile://a_nh.png?y=32</href>", "<href>flatfile://a_nh.png?y=32</href>"},
      {"<href>file:///a_nh.png</href>", "<href>file:///a_nh.png</href>"},
  };
  for (const auto& [content, written] : cases) {
    const auto icon = ReadIcon(content);
    const QString href = icon->GetHref();
    EXPECT_EQ(written, Element(Write(*icon), "href"));
    EXPECT_EQ(href, icon->GetHref());
  }
}

TEST_F(IconTest, PaletteIconsMarkTheirPlaceWithCentreOrEdge) {
  const auto centred = Icon::CreateFromTexId(2 << 8 | 5 << 4 | 0); // icon 16
  ASSERT_TRUE(centred->GetHotSpotOverride());
  EXPECT_EQ(0.5, centred->GetHotSpotOverride()->y);
  const auto standing = Icon::CreateFromTexId(2 << 8 | 7 << 4 | 0); // icon 0
  ASSERT_TRUE(standing->GetHotSpotOverride());
  EXPECT_EQ(0.0, standing->GetHotSpotOverride()->y);
  EXPECT_FALSE(Icon::create("http://h/a.png")->GetHotSpotOverride());
  EXPECT_EQ(Icon::kNoImage, Icon::CreateFromTexId(255)->GetTexId());
}

TEST_F(IconTest, EveryIconOfThePalettesIsABuiltInShape) {
  for (short palette = 2; palette <= 5; ++palette) {
    for (int index = 0; index < 64; ++index) {
      const auto icon = Icon::create(Server("pal%1/icon%2.png").arg(palette).arg(index));
      SCOPED_TRACE(icon->GetHref().toStdString());
      EXPECT_EQ(Icon::kBuiltInImage, icon->GetTexId());
      EXPECT_EQ(icon->GetHref(), icon->GetAbsoluteUrl());
      const QString name = icon->MapPalIconToShape(palette, index);
      EXPECT_EQ(icon->GetKeyText(), Icon::create(Server("%1.png").arg(name))->GetKeyText());
    }
  }
  EXPECT_FALSE(IsValidPalIconIdAndMapIndex(1, 0));
  EXPECT_FALSE(IsValidPalIconIdAndMapIndex(5, 64));
  EXPECT_EQ("pal6/icon-1", Icon::CreateEmptyIcon()->MapPalIconToShape(6, -1));
}

TEST_F(IconTest, IconsAreEqualWhenTheyShowTheSame) {
  const auto a = Icon::create("root://icons/palette-3.png?x=64&y=32");
  const auto b = Icon::create(Server("pal3/icon50.png"));
  EXPECT_TRUE(*a == *b);
  EXPECT_EQ(a->CreateIconKey().MakeHash(), b->CreateIconKey().MakeHash());
  b->SetHref("http://h/a.png");
  EXPECT_TRUE(*a != *b);
  EXPECT_EQ(Server("pushpin/ylw-pushpin.png"), Icon::GetDefaultIcon()->GetKeyText());
  EXPECT_EQ(Icon::kBuiltInImage, Icon::GetDefaultPhotoIcon()->GetTexId());
  const auto copy = Icon::CreateDefaultIcon();
  EXPECT_TRUE(copy != Icon::GetDefaultIcon());
  EXPECT_TRUE(*copy == *Icon::GetDefaultIcon());
}

TEST_F(IconTest, OldNumbersAreConverted) {
  EXPECT_EQ(0x0212, Icon::OldToNew(2, 1, 2));
  EXPECT_EQ(0x0247, Icon::OldToNew(2, 99, 7));
  struct Case {
    unsigned short old, converted;
  };
  const Case cases[] = {{0x0200, 0x0200}, {0x0220, 0x0210}, {0x0210, 0x0240}, {0x0230, 0x0240},
                        {0x0208, 0x0220}, {0x0218, 0x0230}, {0x0228, 0x0230}, {0x0238, 0x0230}};
  for (const Case& c : cases)
    EXPECT_EQ(c.converted, Icon::OldToNew(c.old)) << std::hex << c.old;
  EXPECT_EQ(0x0210, Icon::GetOldNormal(0x0230));
  EXPECT_EQ(0x0200, Icon::GetOldNormal(0x0220));
  EXPECT_EQ(0x0220, Icon::GetOldHighlight(0x0200));
}

TEST_F(IconTest, PaletteParametersAreAppended) {
  const auto icon = Icon::create("http://h/a.png?x=5&w=7&h=0");
  EXPECT_EQ("u?x=5&w=7", icon->AppendPaletteParams("u"));
  EXPECT_EQ("u?a&x=5&w=7", icon->AppendPaletteParams("u?a"));
  EXPECT_EQ("u", Icon::CreateEmptyIcon()->AppendPaletteParams("u"));
}

TEST_F(IconTest, AFactoryMakesIconsOfResources) {
  const IconFactory factory(*GetResourceManager(), *Icon::GetDefaultIcon());
  EXPECT_EQ(Server("shapes/sunny.png"), factory.GetIcon("shapes/sunny", "png")->GetKeyText());
  EXPECT_EQ(Icon::GetDefaultIcon(), factory.GetIcon("none", "png").get());
}

TEST_F(IconTest, AMergeTakesTheSecondIconsFieldsWhereItHasThem) {
  const auto a = ReadIcon("<href>http://h/a.png</href><gx:x>5</gx:x>"
                          "<viewRefreshMode>onStop</viewRefreshMode>");
  const auto b = ReadIcon("<href>http://h/b.png</href>");
  const auto merged = Icon::CreateEmptyIcon();
  merged->merge(*a, *b);
  EXPECT_EQ("http://h/b.png?BBOX=0,0,0,0", merged->GetAbsoluteUrl());
  EXPECT_EQ("5,0,-1,-1", Rectangle(*merged));
  EXPECT_TRUE(merged->HasSpecifiedX());
  EXPECT_FALSE(merged->HasSpecifiedY());
}

} // namespace vorrel::kestan
