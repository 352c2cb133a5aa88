#include "kestan/feature/abstractfeatureschema.h"
#include "kestan/host/utf8ostream.h"
#include "tests/support/kmltest.h"
#include "tests/support/xml.h"

namespace vorrel::kestan {

class TextTest : public KmlTest {
protected:
  RefPtr<Placemark> Make() {
    return Read<Placemark>("<Placemark id=\"p\"><name>n</name></Placemark>");
  }
  /// What stands between the tags of the element.
  static QString Content(const QString& xml, const QString& name) {
    return Element(xml, name).section('>', 1).section(QStringLiteral("</") + name, 0, 0);
  }
};

TEST_F(TextTest, NamesAreEscapedAndReadBackAsTheyWere) {
  const QString lone = QString("a") + QChar(0xD83D) + "b";
  struct Case {
    QString text;
    QString written;
    bool isKept = true;
  };
  const Case cases[] = {
      {"\"&'<>", "&quot;&amp;&apos;&lt;&gt;"},
      {"a]]>b", "a]]&gt;b"},
      {"tab\tline\nend", "tab\tline\nend"},
      {"a\rb", "a&#13;b"},
      {"&amp; &#38;", "&amp;amp; &amp;#38;"},
      {QString::fromUtf8("Grüße, Привет, 東京"), QString::fromUtf8("Grüße, Привет, 東京")},
      {QString::fromUtf8("globe 🌍 here"), QString::fromUtf8("globe 🌍 here")},
      {lone, QString("a") + QChar(0xFFFD) + "b", false},
      {QString("a") + QChar(0xFFFE) + QChar(0) + "\x0B", QString("a") + QString(3, QChar(0xFFFD)),
       false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text.toStdString());
    const auto placemark = Make();
    placemark->SetName(c.text);
    const QString xml = Write(*placemark);
    EXPECT_EQ(c.written, Content(xml, "name"));
    EXPECT_EQ(QString(), FindXmlError(xml.toUtf8()));
    const auto again = Read<Placemark>(xml);
    if (c.isKept) {
      EXPECT_EQ(c.text, again->GetName());
    }
    EXPECT_EQ(xml, Write(*again));
  }
}

// A character that needs care may stand at any place of a block that is copied at once.
TEST_F(TextTest, EscapesHoldAtEveryPlaceOfALongText) {
  const QString special[] = {"&",
                             QString(QChar(0xE9)),
                             QString::fromUtf8("🌍"),
                             QString(QChar(0x8041)),
                             QString(QChar(0xDC00)),
                             "\r"};
  for (const QString& s : special) {
    for (int position = 0; position < 70; ++position) {
      QString text(69, 'x');
      text.insert(position, s);
      Utf8OStream stream;
      XmlUtf8OStream(stream) << text;
      QString expected = text;
      expected.replace("&", "&amp;").replace("\r", "&#13;").replace(QChar(0xDC00), QChar(0xFFFD));
      EXPECT_EQ(expected, QString::fromUtf8(stream.data(), static_cast<int>(stream.size())));
    }
  }
}

// Beyond the size of a block, a surrogate pair may lie on its border.
TEST_F(TextTest, LongTextsAreKept) {
  QString text;
  for (int i = 0; text.size() < 200000; ++i)
    text += i % 3 ? QString::number(i) + "<&>" : QString::fromUtf8("🌍é");
  const auto placemark = Make();
  placemark->SetName(text);
  const auto again = Read<Placemark>(Write(*placemark));
  EXPECT_EQ(text, again->GetName());
}

TEST_F(TextTest, WhiteSpaceInAttributesSurvives) {
  const QString id = "a\tb\nc\rd \"<&>";
  const auto object = Placemark::GetClassSchema().CreateInstance(KmlId(id, ""), "", nullptr);
  const QString xml = Write(*object);
  EXPECT_TRUE(xml.contains("id=\"a&#9;b&#10;c&#13;d &quot;&lt;&amp;&gt;\"")) << xml.toStdString();
  const auto again = Read<Placemark>(xml);
  EXPECT_EQ(id, again->GetId());
}

TEST_F(TextTest, MarkupGoesOutInCdata) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"<b>x</b> & y", "<![CDATA[<b>x</b> & y]]>"},
      {"<b>x]]>y</b>", "<![CDATA[<b>x]]]]><![CDATA[>y</b>]]>"},
      {"<b>]]", "<![CDATA[<b>]]]]>"},
      {"<b>\r</b>", "<![CDATA[<b>]]>&#13;<![CDATA[</b>]]>"},
      {"<![CDATA[<b>x</b>]]>", "<![CDATA[<![CDATA[<b>x</b>]]]]><![CDATA[>]]>"},
      {"<![CDATA[open", "<![CDATA[<![CDATA[open]]>"},
  };
  const auto& field = AbstractFeatureSchema::GetSingleton().description;
  for (const auto& [text, written] : cases) {
    SCOPED_TRACE(text);
    const auto placemark = Make();
    field.SetTypedObject(*placemark, text);
    const QString xml = Write(*placemark);
    const QString element = QString("<description>%1</description>").arg(written);
    EXPECT_EQ(*text != 0, xml.contains(element)) << xml.toStdString();
    EXPECT_EQ(QString(), FindXmlError(xml.toUtf8()));
    const auto again = Read<Placemark>(xml);
    EXPECT_EQ(QString(text), field.get(*again));
    EXPECT_EQ(xml, Write(*again));
  }
}

TEST_F(TextTest, ImageSourcesFollowTheDocument) {
  const std::pair<const char*, const char*> cases[] = {
      {"<img src=\"a.png\">", "<img src=\"http://example.com/dir/a.png\">"},
      {"x < IMG alt='' SRC = 'sub/a.png' width=3/>y<img src='b.png'>z",
       "x < IMG alt='' SRC = 'http://example.com/dir/sub/a.png' width=3/>y"
       "<img src='http://example.com/dir/b.png'>z"},
      {"<img src=\"$[picture]\">", "<img src=\"$[picture]\">"},
      {"<img src=\"$picture.png\">", "<img src=\"http://example.com/dir/$picture.png\">"},
      {"<img src=\"https://x.org/a.png\">", "<img src=\"https://x.org/a.png\">"},
      {"<img src=\"data:image/png;base64,ab//cd==\">",
       "<img src=\"data:image/png;base64,ab//cd==\">"},
      {"<img src=\"\">", "<img src=\"\">"},
      {"<image src=\"a.png\"> <img> <img alt=\"a", "<image src=\"a.png\"> <img> <img alt=\"a"},
  };
  const auto& field = AbstractFeatureSchema::GetSingleton().description;
  for (const auto& [text, written] : cases) {
    SCOPED_TRACE(text);
    const auto placemark = Make();
    field.SetTypedObject(*placemark, text);
    const QString xml = Write(*placemark);
    EXPECT_TRUE(xml.contains(QString("<![CDATA[%1]]>").arg(written))) << xml.toStdString();
  }
}

TEST(UrlTextTest, FormEncoding) {
  Utf8OStream stream;
  UrlUtf8OStream(stream) << QString::fromUtf8("a_-!.*~(')Z9 /&é🌍") << QString(QChar(0xD800));
  EXPECT_EQ("a_-!.*~(')Z9+%2F%26%C3%A9%F0%9F%8C%8D%EF%BF%BD",
            std::string(stream.data(), stream.size()));
}

TEST_F(TextTest, IndentationEndsAtThirtyTwoTabs) {
  const QString xml =
      RoundTrip(QString("<Folder>").repeated(40) + QString("</Folder>").repeated(40));
  EXPECT_TRUE(xml.contains('\n' + QString(32, '\t') + "<Folder>"));
  EXPECT_FALSE(xml.contains(QString(33, '\t')));
}

} // namespace vorrel::kestan
