#include "kestan/core/threadcontext.h"
#include "tests/read/readtest.h"

#include <pthread.h>

namespace vorrel::kestan {

namespace {

using LimitTest = ReadTest;

QByteArray Nested(const char* name, int levels, const QByteArray& inner = {}) {
  const QByteArray tag(name);
  return ("<" + tag + ">").repeated(levels) + inner + ("</" + tag + ">").repeated(levels);
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

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kSmallStack = 4096 * 1024; // Guards around each variable take most of it.
#else
constexpr std::size_t kSmallStack = 512 * 1024;
#endif

/// Runs `function` on a thread with a small stack.
void RunOnSmallStack(void (*function)()) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kSmallStack);
  pthread_t thread;
  const auto start = [](void* run) -> void* {
    reinterpret_cast<void (*)()>(run)();
    return nullptr;
  };
  ASSERT_EQ(0, pthread_create(&thread, &attributes, start, reinterpret_cast<void*>(function)));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

TEST_F(LimitTest, TheDeepestDocumentFitsASmallStack) {
  RunOnSmallStack([] {
    ThreadContext context;
    for (const char* name : {"Folder", "Document", "MultiGeometry"}) {
      SCOPED_TRACE(name);
      KmlHandler handler("http://example.com/deep.kml", 2, nullptr, nullptr, nullptr);
      const QByteArray good = Nested(name, 999, "<x/>");
      auto object =
          ExpatHandler::LoadXml(handler, reinterpret_cast<const unsigned char*>(good.constData()),
                                static_cast<std::size_t>(good.size()));
      ASSERT_TRUE(object);
      QByteArray written;
      EXPECT_EQ(QString(), object->WriteKmlString(written));
      object.reset();
      // A failure behind the innermost end: the clean-up meets all that has been built.
      const QByteArray bad = "<Folder>" + Nested(name, 998) + "</Holder>";
      EXPECT_FALSE(ExpatHandler::LoadXml(handler,
                                         reinterpret_cast<const unsigned char*>(bad.constData()),
                                         static_cast<std::size_t>(bad.size())));
    }
  });
}

TEST_F(LimitTest, EntitiesThatGrowAreRefused) {
  QByteArray text = "<!DOCTYPE a [<!ENTITY e0 \"0123456789\">";
  for (int i = 1; i < 12; ++i)
    text += "<!ENTITY e" + QByteArray::number(i) + " \"" +
            QByteArray("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
  EXPECT_FALSE(ReadObject(text + "]><Placemark><name>&e11;</name></Placemark>"));
  EXPECT_TRUE(error().contains("amplification"));
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
