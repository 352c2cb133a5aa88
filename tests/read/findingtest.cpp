#include "tests/read/readtest.h"

namespace vorrel::kestan {

namespace {

using FindingTest = ReadTest;

/// The findings about a document, as "line:column code" with the message behind.
QStringList Find(const QByteArray& text, int handling = 0) {
  const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
  EXPECT_TRUE(Parse(text, handling, recorder.get()).object);
  QStringList found;
  for (const ParseReport& finding : recorder->findings) {
    found += QStringLiteral("%1:%2 %3 ")
                 .arg(finding.line)
                 .arg(finding.column)
                 .arg(GetText(finding.code)) +
             finding.text;
  }
  return found;
}

/// Only the codes.
QString FindCodes(const QString& content) {
  QStringList codes;
  for (const QString& finding : Find(content.toUtf8()))
    codes += finding.section(' ', 1, 1);
  return codes.join(' ');
}

TEST_F(FindingTest, TextsThatReadingChangesAreFindings) {
  const std::pair<const char*, const char*> cases[] = {
      {"<IconStyle><scale></scale></IconStyle>", "bad-number"},
      {"<IconStyle><scale>inf</scale></IconStyle>", "bad-number"},
      {"<IconStyle><scale> +1.50e0 </scale></IconStyle>", ""},
      {"<PolyStyle><fill>TRUE</fill><outline>0</outline></PolyStyle>", ""},
      {"<PolyStyle><fill>yes</fill></PolyStyle>", "bad-boolean"},
      {"<PolyStyle><fill>2</fill></PolyStyle>", "bad-boolean"},
      {"<LineStyle><color>#7F00ff00</color></LineStyle>", ""},
      {"<LineStyle><color>0x7f00ff00</color></LineStyle>", ""},
      {"<LineStyle><color>red</color></LineStyle>", "bad-color"},
      {"<LineStyle><color>0000ff</color></LineStyle>", "bad-color"},
      {"<LineStyle><color>+fff0000</color></LineStyle>", "bad-color"},
      {"<LineStyle><color> ff 00 00 ff </color></LineStyle>", "bad-color"},
      {"<IconStyle><Icon><gx:w>-1</gx:w></Icon></IconStyle>", ""},
      {"<IconStyle><Icon><gx:w>-7</gx:w></Icon></IconStyle>", "limited-value"},
      {"<IconStyle><hotSpot x='1' y='one' xunits='pixels' yunits='inches'/></IconStyle>",
       "bad-number bad-unit"},
      {"<IconStyle><hotSpot x='1' y='1'>2</hotSpot></IconStyle>", "stray-text"},
      {"<ListStyle><ItemIcon><state>open ajar</state></ItemIcon></ListStyle>", "unknown-word"},
  };
  for (const auto& [field, codes] : cases) {
    SCOPED_TRACE(field);
    EXPECT_EQ(codes, FindCodes("<Style xmlns:gx='http://www.vorrel.com/kml/ext/2.2'>" +
                               QString(field) + "</Style>"));
  }
}

TEST_F(FindingTest, PositionsAreFindingsWhereTheyAreNoTuples) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {" 1,2,3\n", "", ""},
      {"1, 2 ,3", "", ""},
      {"1,2,3 4,5,6", "extra-position", ""},
      {"1,2,3,4,5,6", "long-tuple", "long-tuple"},
      {"1,2,3,", "trailing-comma", "trailing-comma"},
      {"1,2,\n3,4,\n", "trailing-comma extra-position", "trailing-comma"},
      {"1", "short-tuple", "short-tuple"},
      {"1,two", "bad-number", "bad-number"},
      {"1,,3", "bad-number", "bad-number"},
      {"x 1,2", "stray-text", "stray-text"},
      {"1,2 x", "stray-text", "stray-text"},
      {"NaN,1", "stray-text", "stray-text"},
  };
  for (const auto& [text, ofPoint, ofLine] : cases) {
    SCOPED_TRACE(text);
    const QString coordinates = QStringLiteral("<coordinates>%1</coordinates>").arg(text);
    EXPECT_EQ(ofPoint, FindCodes("<Point>" + coordinates + "</Point>"));
    EXPECT_EQ(ofLine, FindCodes("<LineString>" + coordinates + "</LineString>"));
  }
  EXPECT_EQ("short-tuple", FindCodes("<LineString><coordinates>1 2 3</coordinates></LineString>"));
  EXPECT_EQ("", FindCodes("<LineString><coordinates type='polyline'>1,2 3,4</coordinates>"
                          "</LineString>"));
}

TEST_F(FindingTest, AFindingStandsWhereItsTextStands) {
  EXPECT_EQ(QStringList({"2:21 bad-number \"two\" is no number; there are 2 of this kind in the "
                         "text"}),
            Find("<LineString>\n <coordinates>1,2 1,two 3,four</coordinates></LineString>"));
  EXPECT_EQ(QStringList("3:5 long-tuple \"3,4,5,6\" has too many numbers"),
            Find("<LineString><coordinates>\n1,2\n\xC3\xA9   3,4,5,6\n</coordinates></LineString>")
                .filter("long"));
  EXPECT_EQ(QStringList("1:13 stray-text \"x\" is passed over"),
            Find("<LineString><coordinates>x\n1,2</coordinates></LineString>"));
}

TEST_F(FindingTest, IdsAndReferencesAreFindingsWhereTheyDoNotMatch) {
  const QByteArray document =
      "<Document><Style id='a'/>\n<Placemark id='a'><styleUrl>#a</styleUrl></Placemark>\n"
      "<Placemark><styleUrl>#later</styleUrl></Placemark>\n"
      "<Placemark><styleUrl>#none</styleUrl></Placemark>\n"
      "<Placemark><styleUrl>other.kml#none</styleUrl></Placemark>\n"
      "<StyleMap id='later'><Pair><key>normal</key><styleUrl>#gone</styleUrl></Pair></StyleMap>\n"
      "</Document>";
  EXPECT_EQ(QStringList({"2:1 duplicate-id The id \"a\" is that of another element at line 1",
                         "4:22 dangling-reference \"#none\" leads nowhere: no element has this id",
                         "6:55 dangling-reference \"#gone\" leads nowhere: no element has this "
                         "id"}),
            Find(document));
}

TEST_F(FindingTest, AnElementThatDisplacesAnAttributeIsAFinding) {
  EXPECT_EQ("second-value", FindCodes("<Placemark id='a'><id>b</id></Placemark>"));
  EXPECT_EQ("second-value", FindCodes("<Placemark><Snippet maxLines='3'>a<maxLines>4</maxLines>"
                                      "</Snippet></Placemark>"));
  EXPECT_EQ("", FindCodes("<Placemark><id>b</id><Snippet>a<maxLines>4</maxLines></Snippet>"
                          "</Placemark>"));
}

TEST_F(FindingTest, EachIsToldOnceWhenTheDocumentIsReadAnewInAnotherEncoding) {
  EXPECT_EQ(QStringList("1:33 bad-number \"x\" is no number"),
            Find("<Style id='s'><IconStyle><scale>x</scale></IconStyle></Style><!-- \xE9 -->")
                .filter("bad-number"));
}

} // namespace

} // namespace vorrel::kestan
