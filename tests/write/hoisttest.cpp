#include "kestan/core/schema.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/stylemappair.h"
#include "kestan/write/writestate.h"
#include "tests/support/kmltest.h"
#include "tests/support/xml.h"

#include <QTemporaryDir>

namespace vorrel::kestan {

class HoistTest : public KmlTest {
protected:
  static RefPtr<Style> MakeStyle(const char* id, const char* url) {
    return Style::create(KmlId(id, url), QString(), nullptr);
  }
  RefPtr<Placemark> Make(StyleSelector& style) {
    auto placemark = Read<Placemark>("<Placemark><name>n</name></Placemark>");
    placemark->SetReferencedStyleSelector(&style);
    return placemark;
  }
};

TEST_F(HoistTest, AFeatureWithAStyleIsWrappedInADocument) {
  const auto style = MakeStyle("s", "doc.kml");
  const auto placemark = Make(*style);

  QTemporaryDir folder;
  ASSERT_EQ(QString(), placemark->WriteKmlFile(folder.filePath("out.kml")));
  QFile file(folder.filePath("out.kml"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QString xml = QString::fromUtf8(file.readAll());
  EXPECT_TRUE(xml.contains("<Document>\n\t<name>out.kml</name>\n")) << xml.toStdString();
  EXPECT_EQ("<styleUrl>#s</styleUrl>", Element(xml, "styleUrl"));
  EXPECT_LT(xml.indexOf("<Style id=\"s\">"), xml.indexOf("<Placemark>"));

  EXPECT_TRUE(Write(*placemark).contains("<name>KmlFile</name>"));
  EXPECT_FALSE(Write(*placemark, kWriteNoHoist).contains("<Document>"));
}

// What a client does with a state of its own, before it has any document.
TEST_F(HoistTest, OutsideOfDocumentsNothingIsHoisted) {
  QByteArray bytes;
  WriteState state(bytes, QString());
  state.PopStylesAndSchemas();
  EXPECT_FALSE(state.HasStylesOrSchemas());
  EXPECT_FALSE(state.AddStyle(*MakeStyle("s", "a.kml")));
  Read<Document>("<Document/>")->WriteKmlStylesSchemas(state, nullptr);
  state.AddUnknownNamespaces({RefPtr<UnknownNamespace>(new UnknownNamespace("", "p", "urn:p"))});
  state.Finish();
  EXPECT_EQ(QString(), FindXmlError(bytes));
  EXPECT_TRUE(bytes.contains(" xmlns:p=\"urn:p\">\n<Document>")) << bytes.constData();
}

TEST_F(HoistTest, StylesOfOneIdOrOfNoneAreToldApart) {
  const RefPtr<Style> styles[] = {MakeStyle("s", "a.kml"), MakeStyle("s", "b.kml"),
                                  MakeStyle("s", "c.kml"), MakeStyle("Style0", "a.kml"),
                                  MakeStyle("", "a.kml"),  MakeStyle("", "a.kml")};
  const auto folder = Read<Folder>("<Folder/>");
  for (int i = 0; i < 12; ++i)
    folder->AddChild(*Make(*styles[i % 6]));
  const QString xml = Write(*folder);
  EXPECT_EQ(6, xml.count("<Style "));
  for (const char* id : {"s", "s0", "s1", "Style0", "Style1", "Style2"}) {
    EXPECT_EQ(1, xml.count(QString("<Style id=\"%1\">").arg(id))) << xml.toStdString();
    EXPECT_EQ(2, xml.count(QString("<styleUrl>#%1</styleUrl>").arg(id)));
  }
  EXPECT_EQ(QString(), FindXmlError(xml.toUtf8()));
  EXPECT_EQ(xml, Write(*folder)); // the order doesn't come from addresses
}

TEST_F(HoistTest, StylesOfAServerStayWhereTheyAre) {
  const auto style = MakeStyle("s", "http://example.org/styles.kml");
  const QString xml = Write(*Make(*style));
  EXPECT_FALSE(xml.contains("<Document>"));
  EXPECT_TRUE(xml.contains("http://example.org/styles.kml#s</styleUrl>")) << xml.toStdString();
}

TEST_F(HoistTest, ANestedDocumentKeepsItsStyles) {
  const auto outer = MakeStyle("o", "a.kml");
  const auto inner = MakeStyle("i", "a.kml");
  const auto document = Read<Document>("<Document/>");
  const auto nested = Read<Document>("<Document><name>nested</name></Document>");
  document->AddChild(*Make(*outer));
  document->AddChild(*nested);
  nested->AddChild(*Make(*inner));
  const QString xml = Write(*document);
  EXPECT_LT(xml.indexOf("id=\"o\""), xml.indexOf("nested"));
  EXPECT_GT(xml.indexOf("id=\"i\""), xml.indexOf("nested"));
}

TEST_F(HoistTest, WhatAnotherDocumentOfTheFileHoldsIsNotCopied) {
  const QString own = "<Document><Style id='s'><LineStyle><width>2</width></LineStyle></Style>"
                      "</Document>";
  const QString user = "<Document><Placemark><styleUrl>#s</styleUrl></Placemark></Document>";
  for (const QString& documents : {own + user, user + own})
    EXPECT_EQ(1, RoundTrip("<Document>" + documents + "</Document>").count("<Style "));
}

// Such a style has a run-time name, or none, and its neighbours may have the same id.
TEST_F(HoistTest, AReferenceToAnInlineStyleLeadsThereAgain) {
  for (const char* root : {"Document", "Folder"}) {
    const QString name = QLatin1String(root);
    QString text = "<" + name + ">";
    for (int i = 0; i < 6; ++i)
      text += QString("<Placemark>%1</Placemark>").arg(i == 2 ? "<Style/>" : "");
    const auto folder = Read<AbstractFolder>(text + "</" + name + ">");
    for (const int i : {0, 1, 2})
      folder->GetChild(i)->InlineStyle()->GetLineStyle()->SetWidth(static_cast<float>(i + 5));
    for (const int i : {3, 4, 5})
      folder->GetChild(i)->SetReferencedStyleSelector(folder->GetChild(5 - i)->InlineStyle());
    folder->SetReferencedStyleSelector(folder->GetChild(2)->InlineStyle());

    const QString xml = Write(*folder);
    EXPECT_EQ(QString(), FindXmlError(xml.toUtf8())) << xml.toStdString();
    const auto again = Read<AbstractFolder>(xml);
    for (const int i : {3, 4, 5})
      EXPECT_EQ(again->GetChild(5 - i)->InlineStyle(),
                again->GetChild(i)->GetReferencedStyleSelector())
          << xml.toStdString();
    EXPECT_EQ(again->GetChild(2)->InlineStyle(), again->GetReferencedStyleSelector());
    EXPECT_EQ(xml, Write(*again));
  }
}

TEST_F(HoistTest, AHoistedStyleTakesNoNeighboursId) {
  const auto document = Read<Document>("<Document><Placemark/><Placemark/><Placemark/></Document>");
  const auto width = [](const Document& tree, int child) {
    return tree.GetChild(child)->getRenderStyle(kStyleNormal)->GetLineStyle()->GetWidth();
  };
  for (const int i : {0, 1}) // both get the id "inline"
    document->GetChild(i)->InlineStyle()->GetLineStyle()->SetWidth(static_cast<float>(i + 5));
  document->GetChild(2)->SetReferencedStyleSelector(document->GetChild(0)->InlineStyle());
  document->GetChild(0)->SetInlineStyleSelector(nullptr);
  const auto again = Read<Document>(Write(*document));
  EXPECT_EQ(6, width(*again, 1));
  EXPECT_EQ(5, width(*again, 2));
}

TEST_F(HoistTest, WhatWasTakenOutOfItsPlaceStaysWhileItIsReferredTo) {
  const auto document = Read<Document>(
      "<Document><Style id='s'><LineStyle><width>2</width></LineStyle></Style><StyleMap id='m'>"
      "<Pair><key>normal</key><styleUrl>#s</styleUrl></Pair>"
      "<Pair><key>highlight</key><Style><LineStyle><width>3</width></LineStyle></Style></Pair>"
      "</StyleMap><Placemark><styleUrl>#m</styleUrl></Placemark><Placemark/></Document>");
  // A pair's own style has no name either.
  const auto& map = static_cast<StyleMap&>(*document->GetStyleSelector(1));
  document->GetChild(1)->SetReferencedStyleSelector(map.GetPairs()[1]->GetInlineStyleSelector());
  document->RemStyleSelector(*document->GetStyleSelector(0));
  const QString xml = Write(*document);
  EXPECT_EQ(2, xml.count("<Style ")) << xml.toStdString();
  const auto again = Read<Document>(xml);
  const auto width = [&](int child, int mode) {
    return again->GetChild(child)->getRenderStyle(mode)->GetLineStyle()->GetWidth();
  };
  EXPECT_EQ(2, width(0, kStyleNormal));
  EXPECT_EQ(3, width(0, kStyleHighlight));
  EXPECT_EQ(3, width(1, kStyleNormal));
  EXPECT_EQ(xml, Write(*again));
}

namespace {

QString Inline(const char* id, int width) {
  return QString("<Style%1><LineStyle><width>%2</width></LineStyle></Style>")
      .arg(*id ? QString(" id='%1'").arg(id) : QString())
      .arg(width);
}

float WidthOf(const AbstractFeature& feature) {
  return feature.getRenderStyle(kStyleNormal)->GetLineStyle()->GetWidth();
}

} // namespace

// A reader takes "#s" for the style of that id that stands nearest in front.
TEST_F(HoistTest, PastedCopiedAndMovedFeaturesChangeNoOthersLook) {
  const QString reference = "<styleUrl>#s</styleUrl>";
  const QString user = "<Placemark>" + reference + "</Placemark>";
  const QString shared = "<Document>" + Inline("s", 3) + user;
  const QString other = "<Document><Placemark id='s'>" + Inline("s", 7) + reference +
                        "</Placemark>" + user + "</Document>";
  struct Case {
    const char* name;
    QString text;
    void (*edit)(Document& document, AbstractFolder& other);
  };
  const Case cases[] = {
      {"pasted in front", shared + user + "</Document>",
       [](Document& d, AbstractFolder& o) { d.InsertChild(0, *o.GetChild(0)); }},
      {"pasted with its user", shared + user + "</Document>",
       [](Document& d, AbstractFolder& o) {
         d.InsertChild(0, *o.GetChild(0));
         d.InsertChild(1, *o.GetChild(0));
       }},
      {"pasted beside what leads nowhere", "<Document>" + user + "</Document>",
       [](Document& d, AbstractFolder& o) { d.AddChild(*o.GetChild(0)); }},
      {"moved in front",
       shared + "<Placemark>" + Inline("s", 7) + "</Placemark>" + user + "</Document>",
       [](Document& d, AbstractFolder&) { d.InsertChild(0, *d.GetChild(1)); }},
      {"copied and changed",
       "<Document><Placemark>" + Inline("s", 3) + "</Placemark>" + user + "</Document>",
       [](Document& d, AbstractFolder&) {
         const RefPtr<SchemaObject> copy = d.GetChild(0)->clone(true, nullptr);
         d.InsertChild(1, static_cast<AbstractFeature&>(*copy));
         d.GetChild(1)->InlineStyle()->GetLineStyle()->SetWidth(9);
       }},
      {"from a document inside",
       shared + "<Document>" + Inline("s", 5) + user + "</Document>" + user + "</Document>",
       [](Document& d, AbstractFolder&) {
         auto& inner = static_cast<Document&>(*d.GetChild(1));
         const RefPtr<AbstractFeature> moved(inner.GetChild(0));
         d.AddChild(*d.GetChild(0));
         d.AddChild(*moved);
         inner.AddChild(*d.GetChild(1));
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto document = Read<Document>(c.text);
    const auto foreign = ReadAt("other.kml", other);
    c.edit(*document, static_cast<AbstractFolder&>(*foreign));
    const QString xml = Write(*document);
    const auto again = Read<Document>(xml);
    ASSERT_EQ(document->GetChildCount(), again->GetChildCount());
    for (int i = 0; i < document->GetChildCount(); ++i)
      EXPECT_EQ(WidthOf(*document->GetChild(i)), WidthOf(*again->GetChild(i)))
          << i << xml.toStdString();
    EXPECT_EQ(xml, Write(*again));
  }
}

TEST_F(HoistTest, IdsThatOccurTwiceStayWhereReferencesMeanWhatTheySay) {
  const QString user = "<Placemark><styleUrl>#s</styleUrl></Placemark>";
  const auto owner = [](int width) { return "<Placemark>" + Inline("s", width) + "</Placemark>"; };
  for (const QString& text : {user + owner(2) + user + owner(3) + user, owner(2) + owner(3) + user})
    EXPECT_EQ(2, RoundTrip("<Document>" + text + "</Document>").count("<Style id=\"s\">"));
}

TEST_F(HoistTest, WhatHasNoNameForAReaderGetsOne) {
  struct Case {
    const char* name;
    RefPtr<StyleSelector> style;
  };
  const auto icon = [] { return Icon::create("http://h/a+b.png"); };
  const RefPtr<Style> nameless(new Style(KmlId(), QString()));
  const RefPtr<Style> blank = MakeStyle(" s ", "doc.kml");
  for (const RefPtr<Style>& style : {nameless, blank})
    style->GetLineStyle()->SetWidth(5);
  const Case cases[] = {
      {"without a URL", nameless},
      {"blanks", blank},
      {"another icon", Style::GetDefaultStyle()->CloneIcon(*icon())},
      {"two icons", StyleMap::create(*Style::GetDefaultStyle(), *icon(), *icon())},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto folder = Read<Folder>("<Folder/>");
    for (int i = 0; i < 2; ++i)
      folder->AddChild(*Make(*c.style));
    const QString xml = Write(*folder);
    const auto again = Read<Document>(xml);
    const auto& copies = static_cast<const AbstractFolder&>(*again->GetChild(0));
    for (int i = 0; i < 2; ++i) {
      const Style& style = *folder->GetChild(i)->getRenderStyle(kStyleNormal);
      const Style& copy = *copies.GetChild(i)->getRenderStyle(kStyleNormal);
      EXPECT_EQ(style.GetLineStyle()->GetWidth(), copy.GetLineStyle()->GetWidth());
      EXPECT_EQ(style.GetIconStyle()->GetIcon()->GetUrl(), copy.GetIconStyle()->GetIcon()->GetUrl())
          << xml.toStdString();
    }
    EXPECT_EQ(xml, Write(*again));
  }
}

} // namespace vorrel::kestan
