#include "tests/read/readtest.h"

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

TEST_F(LimitTest, EntitiesThatGrowAreRefused) {
  QByteArray text = "<!DOCTYPE a [<!ENTITY e0 \"0123456789\">";
  for (int i = 1; i < 12; ++i)
    text += "<!ENTITY e" + QByteArray::number(i) + " \"" +
            QByteArray("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
  EXPECT_FALSE(ReadObject(text + "]><Placemark><name>&e11;</name></Placemark>"));
  EXPECT_TRUE(error().contains("amplification"));
}

TEST_F(LimitTest, ManyObjectsShareTheDeclarationsOfTheirUnknownContent) {
  QByteArray declarations;
  for (int i = 0; i < 10000; ++i)
    declarations += " xmlns:n" + QByteArray::number(i) + "='urn:" + QByteArray::number(i) + "'";
  const auto folder = ReadObject(
      "<Folder" + declarations + ">" +
      QByteArray("<Placemark n1:a='1'><n2:b/></Placemark>").repeated(20000) + "</Folder>");
  ASSERT_TRUE(folder);

  // Each object with another set of declarations would need a list of its own.
  EXPECT_FALSE(ReadObject("<Folder" + declarations + ">" +
                          QByteArray("<Placemark xmlns:z='z' n1:a='1'/>").repeated(20000) +
                          "</Folder>"));
  EXPECT_TRUE(error().contains("Too many namespaces around unknown content"));
}

TEST_F(LimitTest, OversizedAttributesAreRefused) {
  const QByteArray text = "<Placemark a='" + QByteArray((1 << 26) + 1, 'x') + "'/>";
  EXPECT_FALSE(ReadObject(text));
  EXPECT_TRUE(error().contains("The attributes of an element have more than 67108864 bytes"));
}

} // namespace

} // namespace vorrel::kestan
