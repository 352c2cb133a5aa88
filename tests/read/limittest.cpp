#include "tests/read/readtest.h"

#include <QElapsedTimer>

namespace vorrel::kestan {

namespace {

using LimitTest = ReadTest;

QByteArray Nested(const QByteArray& tag, int levels) {
  return ("<" + tag + ">").repeated(levels) + ("</" + tag + ">").repeated(levels);
}

TEST_F(LimitTest, NestingIsLimitedEverywhere) {
  const char* const message = "Elements are nested more than 1000 levels deep";
  EXPECT_TRUE(ReadObject(Nested("Folder", 1000)));
  EXPECT_FALSE(ReadObject(Nested("Folder", 1001)));
  EXPECT_TRUE(error().contains(message));
  EXPECT_TRUE(ReadObject("<Folder>" + Nested("x", 999) + "</Folder>"));
  EXPECT_FALSE(ReadObject("<Folder>" + Nested("x", 1000) + "</Folder>"));
  EXPECT_TRUE(error().contains(message));
  EXPECT_FALSE(ReadObject("<Folder><name>" + Nested("x", 999) + "</name></Folder>"));

  ExpatHandler::SetMaxElementDepth(3);
  EXPECT_FALSE(ReadObject(Nested("Folder", 4)));
  ExpatHandler::SetMaxElementDepth(0);
  EXPECT_EQ(kMaxElementDepth, ExpatHandler::GetMaxElementDepth());
}

/// Ids that have one hash value in the document at `url`: the second half of each is what the hash,
/// run backwards, asks for behind the first half.
std::vector<QString> MakeCollidingIds(const QString& url, std::size_t count) {
  constexpr std::uint32_t kMultiplier = 0x5BD1E995;
  constexpr std::uint32_t kInverse = 0xE59B19BD;
  const auto mix = [](std::uint32_t word, std::uint32_t factor) {
    word *= factor;
    return (word ^ word >> 24) * factor;
  };
  const std::uint32_t start = ByteHash(QStringLiteral("p"), ByteHash(url, kByteHashSeed));
  const auto isLetter = [](uint unit) { return unit > 0x100 && unit < 0xD800; };
  std::vector<QString> ids;
  for (uint n = 0; ids.size() < count; ++n) {
    const uint first = (0x4E00 + n % 0x1000) | (0x4E00 + n / 0x1000) << 16;
    const uint second =
        mix(((start * kMultiplier) ^ mix(first, kMultiplier)) * kMultiplier, kInverse);
    if (isLetter(second & 0xFFFF) && isLetter(second >> 16))
      ids.push_back(QLatin1Char('p') + QString(QChar(first & 0xFFFF)) + QChar(first >> 16) +
                    QChar(second & 0xFFFF) + QChar(second >> 16));
  }
  return ids;
}

TEST_F(LimitTest, IdsThatWereMadeToCollideAreRefused) {
  const std::vector<QString> ids = MakeCollidingIds(GetDocumentUrl(), 20000);
  ASSERT_EQ(hash<KmlId>()(KmlId(ids[0], GetDocumentUrl())),
            hash<KmlId>()(KmlId(ids[1], GetDocumentUrl())));
  const char* const message = "Too many ids that have the same hash value";
  const auto read = [&](const QString& element, std::size_t count) {
    QString content;
    for (std::size_t i = 0; i < count; ++i)
      content += element.arg(ids[i]);
    return ReadObject("<Document>" + content.toUtf8() + "</Document>");
  };
  EXPECT_TRUE(read("<Placemark id='%1'/>", 500));
  EXPECT_FALSE(read("<Placemark id='%1'/>", ids.size()));
  EXPECT_TRUE(error().contains(message));
  EXPECT_FALSE(read("<Style id='%1'/>", ids.size()));
  EXPECT_TRUE(error().contains(message));
  // A document of its own pays for itself alone.
  EXPECT_TRUE(read("<Placemark id='%1'/>", 500));
}

TEST_F(LimitTest, ManyObjectsShareTheDeclarationsOfTheirUnknownContent) {
  QByteArray declarations;
  for (int i = 0; i < 10000; ++i)
    declarations += " xmlns:n" + QByteArray::number(i) + "='urn:" + QByteArray::number(i) + "'";
  const auto folder = ReadObject(
      "<Folder" + declarations + ">" +
      QByteArray("<Placemark n1:a='1'><n2:b/></Placemark>").repeated(20000) + "</Folder>");
  ASSERT_TRUE(folder);

  // Where each object would need a list of its own, it carries what it mentions.
  const auto each = ReadObject(
      "<Folder" + declarations + ">" +
      QByteArray("<Placemark xmlns:z='z' n1:a='1' b='n2:c'/>").repeated(20000) + "</Folder>");
  ASSERT_TRUE(each);
  EXPECT_TRUE(Write(*each).contains("<Placemark n1:a=\"1\" b=\"n2:c\">"));
}

TEST_F(LimitTest, TextIsRepeatedInProportionToTheDocument) {
  const QByteArray uri = "urn:" + QByteArray(100000, 'x');
  const char* const message = "Too much text that stands in many places";
  const auto refuses = [&](const QByteArray& text) {
    return !ReadObject(text) && error().contains(message) && error().contains("at line 1");
  };
  EXPECT_TRUE(refuses("<!DOCTYPE kml [<!ATTLIST Placemark x CDATA '" + uri + "'>]><Folder>" +
                      QByteArray("<Placemark/>").repeated(1000) + "</Folder>"));
  EXPECT_TRUE(refuses("<!DOCTYPE kml [<!ATTLIST x xmlns:x CDATA '" + uri + "'>]><Folder>" +
                      QByteArray("<x/>").repeated(1000) + "</Folder>"));
  EXPECT_TRUE(refuses("<k:Folder xmlns:k='http://www.opengis.net/kml/2.2' xmlns='" + uri + "'>" +
                      QByteArray("<k:Placemark><a/></k:Placemark>").repeated(1000) +
                      "</k:Folder>"));
  EXPECT_TRUE(refuses("<kml xmlns:x='" + uri + "'>" + QByteArray("<x:a/>").repeated(1000) +
                      "<Placemark xmlns:x='urn:y' x:b='1'/></kml>"));
  // What doesn't mention the prefix needs no declaration.
  EXPECT_TRUE(ReadObject("<kml xmlns:x='" + uri + "'>" + QByteArray("<a/>").repeated(1000) +
                         "<Placemark xmlns:x='urn:y' b='1'/></kml>"));

  // One that the root can't declare.
  const auto folder =
      ReadObject("<Folder xmlns:x='urn:y' x:a='1'><Folder xmlns:x='" + uri + "'>" +
                 QByteArray("<Placemark x:a='1'/>").repeated(1000) + "</Folder></Folder>");
  ASSERT_TRUE(folder);
  QByteArray bytes;
  EXPECT_EQ("The namespaces of unknown content would take up most of the document.",
            folder->WriteKmlString(bytes, 0));
}

TEST_F(LimitTest, WhatIsWrittenIsReadHoweverManyNamespacesItHas) {
  QByteArray content;
  for (int i = 0; i < 5000; ++i) {
    const QByteArray n = QByteArray::number(i);
    content += "<Placemark xmlns:q='urn:q" + n + "' q:a='1' xmlns:r" + n + "='urn:" + n + "' r" +
               n + ":b='q:c'><q:b/><r" + n + ":c/></Placemark>";
  }
  const QString written = RoundTrip("<Folder>" + content + "</Folder>");
  EXPECT_TRUE(written.contains("<Placemark q:a=\"1\" r7:b=\"q:c\" xmlns:q=\"urn:q7\">"));
}

TEST_F(LimitTest, ATokenMayBeAsLongAsTheDocument) {
  const QByteArray text = "<Placemark><!--" + QByteArray(48 << 20, 'x') + "--><name>n</name>";
  QElapsedTimer timer;
  timer.start();
  EXPECT_TRUE(ReadObject(text + "</Placemark>"));
  // Searched anew for each piece, it would take half a minute.
  EXPECT_LT(timer.elapsed(), 10000);
}

TEST_F(LimitTest, OversizedAttributesAreRefused) {
  const QByteArray text = "<Placemark a='" + QByteArray((1 << 26) + 1, 'x') + "'/>";
  EXPECT_FALSE(ReadObject(text));
  EXPECT_TRUE(error().contains("The attributes of an element have more than 67108864 bytes"));
}

} // namespace

} // namespace vorrel::kestan
