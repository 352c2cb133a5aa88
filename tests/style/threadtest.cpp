#include "kestan/core/notificationdeferrer.h"
#include "kestan/feature/balloonvisibilityobserver.h"
#include "kestan/feature/document.h"
#include "kestan/host/pump.h"
#include "kestan/read/kmlhandler.h"
#include "kestan/read/namespaces.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/stylemap.h"
#include "tests/style/styletest.h"
#include "tests/support/workers.h"

#include <array>

namespace vorrel::kestan {

/// Documents that are read on several threads at once, as a client's loaders do.
class StyleThreadTest : public StyleTest {
protected:
  static constexpr int kWorkers = 3;
  static constexpr int kRounds = 5;
  using Documents = std::array<RefPtr<SchemaObject>, kWorkers>;

  /// Reads without the fixture's list of messages, which is the main thread's.
  static RefPtr<SchemaObject> ReadOnWorker(const QString& url, const QString& text) {
    KmlHandler handler(url, 2, nullptr, nullptr, nullptr);
    const QByteArray bytes = text.toUtf8();
    const NotificationDeferrer deferrer; // as a client that merges the document later
    return ExpatHandler::LoadXml(handler, reinterpret_cast<const unsigned char*>(bytes.constData()),
                                 static_cast<std::size_t>(bytes.size()));
  }

  /// What a document can ask of what all threads share: built-in styles and icons, times, a
  /// balloon, an encoding, unknown content, references forward and into the documents of other
  /// threads.
  static QString MakeText(int number) {
    return QStringLiteral(
               "<?xml version='1.0' encoding='windows-1252'?>"
               "<kml xmlns='http://base%1.example.com/kml/2.2' xmlns:o='urn:o'><Document>"
               "<Placemark><name>shared</name><styleUrl>#m</styleUrl>"
               "<Style><LineStyle><width>5</width></LineStyle></Style></Placemark>"
               "<Placemark><name>alike</name><styleUrl>#m</styleUrl>"
               "<Style><LineStyle><width>5</width></LineStyle></Style></Placemark>"
               "<Placemark><name>built in</name><styleUrl>root://styles#default?iconId=0x307"
               "</styleUrl><TimeStamp><when>2007-06-0%2</when></TimeStamp></Placemark>"
               "<Placemark><name>icon</name><Style><IconStyle><Icon><href>"
               "root://icons/palette-3.png?x=64&amp;y=32</href><x>32</x></Icon></IconStyle>"
               "</Style></Placemark>"
               "<Placemark><name>far</name><styleUrl>doc%3.kml#s</styleUrl></Placemark>"
               "<Placemark><name>none</name><o:unknown a='b'/><Point><coordinates>1,2,3"
               "</coordinates></Point></Placemark>"
               "<StyleMap id='m'><Pair><key>normal</key><styleUrl>#s</styleUrl></Pair></StyleMap>"
               "<Style id='s'><PolyStyle><fill>0</fill></PolyStyle></Style>"
               "</Document></kml>")
        .arg(QString::number(number), QString::number(number + 1),
             QString::number((number + 1) % kWorkers));
  }

  static QStringList Looks(const SchemaObject& document) {
    QStringList looks;
    for (const char* name : {"shared", "alike", "built in", "icon", "none"}) {
      for (const int mode : {kStyleNormal, kStyleHighlight})
        looks += Look(*Find(document, name), mode);
    }
    return looks;
  }
};

TEST_F(StyleThreadTest, DocumentsAreReadAskedAndWrittenOnAllThreads) {
  const auto url = [](int number) { return QStringLiteral("/dir/doc%1.kml").arg(number); };
  RegisterNamespaceBase(Namespace::kKml, "http://base0.example.com/kml/");
  const auto expected = ReadOnWorker(url(9), MakeText(0));
  ASSERT_TRUE(expected);
  const QStringList looks = Looks(*expected);
  EXPECT_EQ("LineStyle.width=5 PolyStyle.fill=0", looks[0]);
  for (int number = 1; number < kWorkers; ++number)
    RegisterNamespaceBase(Namespace::kKml,
                          QStringLiteral("http://base%1.example.com/kml/").arg(number));
  for (int round = 0; round < kRounds; ++round) {
    Documents documents;
    std::array<QStringList, kWorkers> answers;
    Workers workers(kWorkers, [&](int number) {
      const auto i = static_cast<std::size_t>(number);
      documents[i] = ReadOnWorker(url(number), MakeText(number));
      ASSERT_TRUE(documents[i]);
      answers[i] = Looks(*documents[i]);
      QByteArray bytes;
      EXPECT_EQ(QString(), documents[i]->WriteKmlString(bytes));
    });
    // Another base may come while documents are read.
    workers.Finish([&] {
      RegisterNamespaceBase(Namespace::kKml, "http://late.example.com/kml/");
      Look(*Find(*expected, "shared"));
    });
    for (int number = 0; number < kWorkers; ++number) {
      const auto i = static_cast<std::size_t>(number);
      ASSERT_TRUE(documents[i]);
      EXPECT_EQ(looks, answers[i]);
      workers.Merge(number);
      // The main thread goes on with the objects while their thread ends.
      Style::find(url(number), "s")->GetLineStyle()->SetWidth(7);
      EXPECT_EQ("LineStyle.width=5 PolyStyle.fill=0", Look(*Find(*documents[i], "shared")));
    }
    for (const auto& document : documents)
      EXPECT_EQ("LineStyle.width=7 PolyStyle.fill=0", Look(*Find(*document, "far")));
  }
}

TEST_F(StyleThreadTest, ABalloonOfAWorkerIsReportedWhenTheMainThreadHasIt) {
  class Log final : public BalloonVisibilityObserver {
  public:
    void OnNotify(AbstractFeature* feature) override { names += feature->GetName(); }
    QStringList names;
  };
  Log log;
  Documents documents;
  {
    const QString text = QStringLiteral(
        "<kml xmlns:gx='http://www.vorrel.com/kml/ext/2.2'><Document><Placemark><name>%1</name>"
        "<gx:balloonVisibility>1</gx:balloonVisibility></Placemark></Document></kml>");
    const auto url = QStringLiteral("/dir/b%1.kml");
    ReadLocal(text.arg("gone"));
    Workers workers(kWorkers, [&](int number) {
      ReadOnWorker(url.arg("x"), text.arg("gone"));
      documents[static_cast<std::size_t>(number)] = ReadOnWorker(url.arg(number), text.arg(number));
    });
    workers.Finish([] { Pump::Run(0.001); });
    EXPECT_EQ(QStringList(), log.names);
  }
  while (Pump::Run(1.0) == 0.0) {
  }
  log.names.sort();
  EXPECT_EQ(QStringList({"0", "1", "2"}), log.names);
}

TEST_F(StyleThreadTest, EachThreadResolvesUrlsWithACacheOfItsOwn) {
  Workers workers(kWorkers, [](int number) {
    const QString base = QStringLiteral("http://h%1/a/doc.kml").arg(number);
    for (int i = 0; i < 200; ++i) {
      const QString file = QStringLiteral("%1.png").arg(i / 2);
      EXPECT_EQ(QStringLiteral("http://h%1/a/").arg(number) + file,
                SchemaObject::MakeAbsoluteUrl(base, file));
      EXPECT_EQ(KmlId("x", base), SchemaObject::MakeAbsoluteId(base, "#x"));
    }
  });
}

} // namespace vorrel::kestan
