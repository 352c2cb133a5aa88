#include "tests/tools/tooltest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace vorrel::kestan {

namespace {

using CheckToolTest = KestanToolTest;

QByteArray InKml(const QByteArray& content) {
  return "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n" + content + "\n</kml>\n";
}

TEST_F(CheckToolTest, EachReportHasItsPlaceSeverityAndCode) {
  const QString good = MakeFile("good.kml", "<kml><Placemark/></kml>");
  const QString odd = MakeFile("odd.kml", InKml("<Placemark odd=\"1\">\n  <unheard-of/>\n"
                                                "<visibility>yes</visibility></Placemark>"));
  const QString bad = MakeFile("bad.kml", "<kml>\n<Placemark>\n</kml>");
  const QString none = Path("none.kml");

  const Result fine = Run({"check", good});
  EXPECT_EQ(0, fine.status);
  EXPECT_EQ(good + ": fine\n", fine.out);
  EXPECT_EQ("", fine.err);

  const Result result = Run({"check", good, odd, bad, none});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(5, result.err.count('\n')) << result.err.toStdString();
  const QString lines[] = {
      odd + ":2:\\d+: error: Unknown attribute odd=\"1\" \\[unknown-attribute\\]",
      odd + ":3:\\d+: error: Unknown element <unheard-of> \\[unknown-element\\]",
      odd + ":4:13: warning: \"yes\" is .+ \\[bad-boolean\\]",
      bad + ":3:\\d+: error: .+ \\[malformed-xml\\]", none + ": error: .+ \\[unreadable\\]"};
  for (const QString& line : lines)
    EXPECT_TRUE(result.err.contains(QRegularExpression(line + "\n"))) << line.toStdString();
  EXPECT_EQ(good + ": fine\n" + odd + ": errors: 2, warnings: 1\n" + bad +
                ": can't be read, errors: 1\n" + none + ": can't be read, errors: 1\n",
            result.out);
}

TEST_F(CheckToolTest, NothingIsLostWithoutAWord) {
  const char* const contents[] = {
      "<Point><coordinates>1,2,3,4,5,6</coordinates></Point>",
      "<Point><coordinates>abc</coordinates></Point>",
      "<Point><coordinates>1,2 3,4</coordinates></Point>",
      "<LineString><coordinates>1;2 3;4</coordinates></LineString>",
      "<LineString><coordinates>NaN,1</coordinates></LineString>",
      "<LineString><coordinates>1 2 3</coordinates></LineString>",
      "<Style><LineStyle><color>red</color></LineStyle></Style>",
      "<Style><LineStyle><color> ff 00 00 ff </color></LineStyle></Style>",
      "<Style><LineStyle><color>0000ff</color></LineStyle></Style>",
      "<TimeStamp><when>junk</when></TimeStamp>",
      "<TimeStamp><when>2007-13-01</when></TimeStamp>",
      "<styleUrl>#none</styleUrl>",
      "<Style id='a'/><Point id='a'/>",
      "<Style/><Style/>",
  };
  for (const char* content : contents) {
    const QString file =
        MakeFile("a.kml", InKml(QByteArray("<Placemark>") + content + "</Placemark>"));
    const Result result = Run({"check", file});
    EXPECT_EQ(1, result.status) << content;
    EXPECT_TRUE(result.err.contains(file + ":2:")) << content;
  }
}

TEST_F(CheckToolTest, ForeignContentIsARemark) {
  const QString file = MakeFile(
      "a.kml", InKml("<Placemark xmlns:q='urn:q'><q:a/><q:b/><b xmlns='urn:q'/></Placemark>"));
  const Result result = Run({"check", file});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(3, result.err.count(": remark: "));
  EXPECT_EQ(file + ": fine, remarks: 3\n", result.out);
}

TEST_F(CheckToolTest, ReportsComeOnceWhateverTheEncoding) {
  const QString file =
      MakeFile("a.kml", InKml("<Placemark><nome/><visibility>x</visibility><styleUrl>#a</styleUrl>"
                              "<name>\xE9</name></Placemark>"));
  const Result result = Run({"check", file});
  EXPECT_EQ(file + ": errors: 1, warnings: 2\n", result.out) << result.err.toStdString();
}

TEST_F(CheckToolTest, JsonSaysTheSame) {
  const QString odd =
      MakeFile("odd.kml", InKml("<Placemark>\n <visibility>\"x\\</visibility></Placemark>"));
  const Result result = Run({"check", "--json", odd, Path("none.kml")});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.err);
  QJsonParseError error;
  const QJsonObject root = QJsonDocument::fromJson(result.out.toUtf8(), &error).object();
  ASSERT_EQ(QJsonParseError::NoError, error.error) << result.out.toStdString();
  const QJsonArray files = root["files"].toArray();
  ASSERT_EQ(2, files.size());
  EXPECT_EQ(odd, files[0].toObject()["file"].toString());
  EXPECT_TRUE(files[0].toObject()["readable"].toBool());
  const QJsonArray reports = files[0].toObject()["reports"].toArray();
  ASSERT_EQ(1, reports.size());
  const QJsonObject report{{"severity", "warning"},
                           {"code", "bad-boolean"},
                           {"line", 3},
                           {"column", 14},
                           {"path", "Kml/Placemark/visibility"},
                           {"message", "\"\"x\\\" is neither true nor false"}};
  QJsonObject found = reports[0].toObject();
  found["path"] = QString("Kml/") + found["path"].toString().section('/', 1);
  EXPECT_EQ(report, found);
  EXPECT_FALSE(files[1].toObject()["readable"].toBool());
  EXPECT_EQ("unreadable",
            files[1].toObject()["reports"].toArray()[0].toObject()["code"].toString());
}

} // namespace

} // namespace vorrel::kestan
