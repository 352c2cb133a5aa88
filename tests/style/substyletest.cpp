#include "kestan/style/balloonstyle.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstackstyle.h"
#include "kestan/style/iconstyleschema.h"
#include "kestan/style/labelstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/liststyle.h"
#include "kestan/style/polystyle.h"
#include "kestan/style/stylemap.h"
#include "tests/style/styletest.h"

namespace vorrel::kestan {

class SubStyleTest : public StyleTest {
protected:
  /// What stands between the tags of the first style, without white space.
  static QString GetStyleContent(const QString& xml) {
    const QString style = Squeezed(Element(xml, "Style"));
    return style.mid(style.indexOf('>') + 1).chopped(static_cast<int>(qstrlen("</Style>")));
  }
  RefPtr<Style> ReadStyle(const QString& content) {
    return Read<Style>("<Style xmlns='http://www.vorrel.com/kml/2.2' "
                       "xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>" +
                       content + "</Style>");
  }
};

TEST_F(SubStyleTest, WhatWasGivenIsWritten) {
  struct Case {
    const char* content;
    const char* inPlace = nullptr; ///< Null where it's the same.
    const char* shared = nullptr;  ///< Without what equals a default. Null where it's the same.
  };
  const Case cases[] = {
      {"<LineStyle><color>ff0000ff</color><width>1</width></LineStyle>", nullptr,
       "<LineStyle><color>ff0000ff</color></LineStyle>"},
      {"<LineStyle><width>1</width></LineStyle>", nullptr, ""},
      {"<PolyStyle><antialias>0</antialias><fill>0</fill><outline>1</outline></PolyStyle>", nullptr,
       "<PolyStyle><antialias>0</antialias><fill>0</fill></PolyStyle>"},
      {"<IconStyle><scale>2</scale><heading>90</heading><hotSpot x=\"0.5\" y=\"-20\" "
       "xunits=\"fraction\" yunits=\"insetPixels\"/><gx:headingMode>northUp</gx:headingMode>"
       "<gx:facingMode>billboard</gx:facingMode><gx:hotSpotMode>endPt</gx:hotSpotMode>"
       "<gx:stackOrder>4</gx:stackOrder><gx:overlappable>1</gx:overlappable></IconStyle>"},
      {"<IconStyle><hotSpot x=\"7\" y=\"8\" xunits=\"pixels\" yunits=\"pixels\" more=\"&lt;\"/>"
       "</IconStyle>"},
      {"<IconStyle><gx:headingMode>worldNorth</gx:headingMode></IconStyle>",
       "<IconStyle><gx:headingMode>northUp</gx:headingMode></IconStyle>"},
      {"<BalloonStyle><text><![CDATA[<b>$[name]</b>]]></text><color>ff000002</color>"
       "</BalloonStyle>"},
      {"<BalloonStyle><color>ff000001</color><bgColor>ff000002</bgColor></BalloonStyle>",
       "<BalloonStyle><bgColor>ff000002</bgColor></BalloonStyle>"},
      {"<ListStyle><listItemType>radioFolder</listItemType><ItemIcon><state>open</state>"
       "<href>http://a/i.png</href></ItemIcon><bgColor>ff000001</bgColor>"
       "<maxSnippetLines>2</maxSnippetLines></ListStyle>",
       nullptr,
       "<ListStyle><listItemType>radioFolder</listItemType><ItemIcon><state>open</state>"
       "<href>http://a/i.png</href></ItemIcon><bgColor>ff000001</bgColor></ListStyle>"},
      // Nothing was said.
      {"<LineStyle/><ListStyle></ListStyle><gx:IconStackStyle/>", ""},
      // What can be referred to, and what isn't understood, stays.
      {"<LineStyle id=\"l\"></LineStyle>"},
      {"<LineStyle><odd>1</odd></LineStyle>"},
      {"<PolyStyle><fill a=\"b\">1</fill></PolyStyle>"},
      {"<BalloonStyle odd=\"1\"></BalloonStyle>"},
      // An empty text stands in the way of the shared style's, or of the default.
      {"<BalloonStyle><text></text></BalloonStyle>"},
      {"<LabelStyle><gx:groupId></gx:groupId><gx:text></gx:text></LabelStyle>", nullptr,
       "<LabelStyle><gx:text></gx:text></LabelStyle>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.content);
    const QString inPlace = c.inPlace ? c.inPlace : c.content;
    const auto style = ReadStyle(c.content);
    const QString first = Write(*style);
    EXPECT_EQ(inPlace, GetStyleContent(first));
    EXPECT_EQ(first, Write(*Read<Style>(first)));
    EXPECT_EQ(first, Write(*style->Clone()).remove(QStringLiteral(" id=\"\"")));

    auto document = ReadLocal(
        InDocument("<Style id='s'>" + QLatin1String(c.content) +
                   "</Style><Placemark><name>p</name><styleUrl>#s</styleUrl></Placemark>"));
    const QString hoisted = Write(*document);
    EXPECT_EQ(c.shared ? QString(c.shared) : inPlace, GetStyleContent(hoisted));
    document.reset();
    EXPECT_EQ(hoisted, Write(*ReadLocal(hoisted)));
  }
}

TEST_F(SubStyleTest, UnknownModesAreReportedOrChangeNothing) {
  const auto style = ReadStyle("<LineStyle><colorMode>loud</colorMode></LineStyle>"
                               "<ListStyle><listItemType>4</listItemType></ListStyle>");
  EXPECT_EQ(2, messages().size());
  EXPECT_EQ(ListStyle::kCheck, style->GetListStyle()->GetListItemType());
  const QString list = "<ListStyle><listItemType>4</listItemType></ListStyle>";
  EXPECT_EQ(list + "<LineStyle><colorMode>loud</colorMode></LineStyle>",
            GetStyleContent(Write(*style)));
  style->GetLineStyle()->SetColorMode("random");
  style->GetLineStyle()->SetColorMode("no mode");
  EXPECT_EQ(ColorStyle::kRandom, style->GetLineStyle()->GetColorMode());
  style->GetLineStyle()->SetColorMode(static_cast<ColorStyle::ColorMode>(3));
  style->GetListStyle()->SetListItemType(static_cast<ListStyle::ListItemType>(4));
  EXPECT_EQ(list + "<LineStyle><colorMode>random</colorMode></LineStyle>",
            GetStyleContent(Write(*style)));
}

TEST_F(SubStyleTest, AStyleKeepsTheIconThatAnotherOneIsMadeWith) {
  const auto style = ReadStyle("<IconStyle><Icon><href>http://a/i.png</href></Icon></IconStyle>");
  Icon& icon = *style->GetIconStyle()->GetIcon();
  const auto map = StyleMap::create(*Style::GetDefaultStyle(), icon, icon);
  for (const int mode : {kStyleNormal, kStyleHighlight})
    EXPECT_TRUE(map->InternalGetSelectedStyle(mode)->GetIconStyle()->HasIcon());
  EXPECT_TRUE(style->GetIconStyle()->HasIcon());
}

TEST_F(SubStyleTest, RedundantFieldsAreForgotten) {
  const auto base = ReadStyle("<LineStyle><color>ff0000ff</color><width>2</width></LineStyle>"
                              "<IconStyle><Icon><href>http://a/i.png</href></Icon></IconStyle>");
  const auto style = ReadStyle("<LineStyle><color>ff0000ff</color><width>3</width></LineStyle>"
                               "<IconStyle><Icon><href>http://a/i.png</href></Icon></IconStyle>"
                               "<PolyStyle><fill>1</fill></PolyStyle>"
                               "<ListStyle/>");
  EXPECT_FALSE(style->UnspecifyRedundantFields(*base));
  EXPECT_EQ("<LineStyle><width>3</width></LineStyle>", GetStyleContent(Write(*style)));
  style->GetLineStyle()->SetWidth(2);
  style->_setListStyle(nullptr);
  EXPECT_TRUE(style->UnspecifyRedundantFields(*base));
  EXPECT_TRUE(base->GetLineStyle()->UnspecifyRedundantFields(*base->GetLineStyle()));
}

TEST_F(SubStyleTest, HotSpotOfAnIcon) {
  const std::tuple<const char*, double, LegacyScreenVec::Units> cases[] = {
      {"", 20.0, LegacyScreenVec::kPixels},
      {"<hotSpot x='0.5' y='0.5' xunits='fraction' yunits='fraction'/>", 0.5,
       LegacyScreenVec::kFraction},
      {"<hotSpot x='7' y='8' xunits='pixels' yunits='pixels'/>", 7.0, LegacyScreenVec::kPixels},
      {"<Icon><href>http://a/i.png</href></Icon>", 0.5, LegacyScreenVec::kFraction},
      {"<Icon><href>root://icons/palette-3.png?x=64&amp;y=32&amp;w=32&amp;h=32</href></Icon>"
       "<hotSpot x='7' y='8' xunits='pixels' yunits='pixels'/>",
       0.5, LegacyScreenVec::kFraction},
  };
  for (const auto& [content, x, units] : cases) {
    SCOPED_TRACE(content);
    const auto style = ReadStyle("<IconStyle>" + QLatin1String(content) + "</IconStyle>");
    EXPECT_EQ(x, style->GetIconStyle()->GetHotSpot().x);
    EXPECT_EQ(units, style->GetIconStyle()->GetHotSpot().xunits);
  }
}

TEST_F(SubStyleTest, AnIconStyleAnswersForItsIcon) {
  IconStyle icon(KmlId(), QString(), false);
  const auto& fields = IconStyleSchema::GetSingleton();
  const unsigned iconBit = fields.icon.GetMaskBit();
  EXPECT_EQ(Icon::GetDefaultIcon(), icon.GetIcon());
  EXPECT_FALSE(icon.HasIcon());
  Icon* own = icon.GetOrCreateIcon();
  EXPECT_NE(Icon::GetDefaultIcon(), own);
  EXPECT_TRUE(*own == *Icon::GetDefaultIcon());
  EXPECT_TRUE(icon.HasIcon());
  icon.SetFieldSpecified(~0U, false);
  EXPECT_EQ(iconBit, icon.GetFieldsSpecified());

  icon.SetFieldSpecified(iconBit, false);
  icon.CleanupHeadingAndHeadingModeBits();
  EXPECT_EQ(iconBit, icon.GetFieldsSpecified());
  icon.SetHeadingMode(kHeadingNorthUp);
  icon.CleanupHeadingAndHeadingModeBits();
  EXPECT_EQ(fields.heading.GetMaskBit() | fields.headingMode.GetMaskBit() | iconBit,
            icon.GetFieldsSpecified());

  LineStyle line(KmlId(), QString(), false);
  line.SetIcon(Icon::CreateEmptyIcon().get());
  EXPECT_EQ(nullptr, line.GetIcon());
}

TEST_F(SubStyleTest, StatesOfItemIconsBelongToTheLastThatClaimsThem) {
  struct Case {
    const char* icons;
    const char* kept; ///< State and file of those that are left.
  };
  const Case cases[] = {
      {"<ItemIcon><href>a</href></ItemIcon>", "503a"},
      {"<ItemIcon><href>a</href></ItemIcon><ItemIcon><href>b</href></ItemIcon>", "503b"},
      {"<ItemIcon><href>a</href></ItemIcon><ItemIcon><state>fetching0</state><href>b</href>"
       "</ItemIcon>",
       "455a 48b"},
      {"<ItemIcon><state>fetching0 open</state><href>a</href></ItemIcon><ItemIcon>"
       "<state>fetching1</state><href>b</href></ItemIcon><ItemIcon><state>fetching2 error</state>"
       "<href>c</href></ItemIcon>",
       "33a 64b 148c"},
      {"<ItemIcon><state>open closed</state><href>a</href></ItemIcon>"
       "<ItemIcon><state>closed</state><href>b</href></ItemIcon>"
       "<ItemIcon><state>open error</state><href>c</href></ItemIcon>",
       "2b 5c"},
      {"<ItemIcon><state>asleep</state><href>a</href></ItemIcon>", "503a"},
      {"<ItemIcon><state/><href>a</href></ItemIcon>", "503a"},
      {"<ItemIcon><state>open closed error fetching0 fetching1 fetching2</state><href>a</href>"
       "</ItemIcon>",
       "247a"},
  };
  const auto describe = [](const Style& style) {
    QStringList icons;
    for (const RefPtr<ItemIcon>& icon : style.GetListStyle()->GetItemIcons())
      icons += QString::number(icon->GetState()) + icon->GetHref().right(1);
    return icons.join(' ');
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.icons);
    const auto style = ReadStyle("<ListStyle>" + QLatin1String(c.icons) + "</ListStyle>");
    EXPECT_EQ(c.kept, describe(*style));
    const QString first = Write(*style);
    const auto again = Read<Style>(first);
    EXPECT_EQ(c.kept, describe(*again));
    EXPECT_EQ(first, Write(*again));
    EXPECT_EQ(c.kept, describe(*style->Clone()));
  }

  // Without those that took its states, an icon still says which ones it has.
  const auto style = ReadStyle("<ListStyle>" + QLatin1String(cases[3].icons) + "</ListStyle>");
  const auto icons = style->GetListStyle()->GetItemIcons();
  style->GetListStyle()->ClearItemIcons();
  EXPECT_FALSE(icons[0]->HasOwner(*style->GetListStyle()));
  EXPECT_EQ(33U, Read<ItemIcon>(Write(*icons[0]))->GetState());
}

TEST_F(SubStyleTest, TheBestItemIconHasMostStatesInCommon) {
  const auto style =
      ReadStyle("<ListStyle><ItemIcon><state>open</state><href>a</href></ItemIcon>"
                "<ItemIcon><state>fetching0</state><href>b</href></ItemIcon>"
                "<ItemIcon><state>fetching1</state><href>c</href></ItemIcon></ListStyle>");
  const ListStyle& list = *style->GetListStyle();
  const auto best = [&](unsigned state) { return list.FindBestIcon(state)->GetHref(); };
  EXPECT_EQ("a", best(ItemIcon::kOpen));
  EXPECT_EQ("a", best(ItemIcon::kClosed)); // none fits: the first
  EXPECT_EQ("c", best(ItemIcon::kFetching1));
  EXPECT_EQ("c", best(ItemIcon::kFetching1 | ItemIcon::kOpen));
  EXPECT_EQ("http://example.com/dir/a", list.FindBestIcon(1)->GetAbsoluteUrl());
  list.GetItemIcons()[0]->SetHref("x");
  EXPECT_EQ("http://example.com/dir/x", list.FindBestIcon(1)->GetAbsoluteUrl());
  EXPECT_EQ(nullptr, ListStyle::GetDefaultListStyle()->FindBestIcon(1));
}

TEST_F(SubStyleTest, OldStylesMoveToTheirParts) {
  const std::pair<const char*, const char*> cases[] = {
      {"<polyMode>outline</polyMode>", "<PolyStyle><fill>0</fill><outline>1</outline></PolyStyle>"},
      {"<polyMode>fill</polyMode>", "<PolyStyle><fill>1</fill><outline>0</outline></PolyStyle>"},
      {"<geomColor>ff000001</geomColor>",
       "<IconStyle><color>ff000001</color></IconStyle><LineStyle><color>ff000001</color>"
       "</LineStyle><PolyStyle><color>ff000001</color></PolyStyle>"},
      {"<geomScale>3</geomScale>",
       "<IconStyle><scale>3</scale></IconStyle><LineStyle><width>3</width></LineStyle>"},
      {"<labelColor>ff000001</labelColor><labelScale>0</labelScale>"
       "<labelPlacement>hide</labelPlacement>",
       "<LabelStyle><color>ff000001</color><scale>0</scale></LabelStyle>"},
      {"<falseColorGeom>1</falseColorGeom>",
       "<IconStyle><colorMode>random</colorMode></IconStyle><LabelStyle><colorMode>random"
       "</colorMode></LabelStyle><LineStyle><colorMode>random</colorMode></LineStyle>"
       "<PolyStyle><colorMode>random</colorMode></PolyStyle>"},
      {"<Icon><href>http://a/i.png</href></Icon>",
       "<IconStyle><Icon><href>http://a/i.png</href></Icon></IconStyle>"},
      {"<providerId>7</providerId>", ""},
  };
  for (const auto& [content, written] : cases) {
    SCOPED_TRACE(content);
    const auto style = ReadStyle(content);
    EXPECT_EQ(written, GetStyleContent(Write(*style)));
    EXPECT_EQ(written, GetStyleContent(Write(*style->Clone())));
  }
  EXPECT_EQ(LabelStyle::kPlacementHide,
            ReadStyle(cases[4].first)->GetLabelStyle()->GetOldPlacement());
  EXPECT_EQ(7, ReadStyle(cases[7].first)->Clone()->GetProviderId());
}

} // namespace vorrel::kestan
