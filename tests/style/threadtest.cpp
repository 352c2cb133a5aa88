#include "kestan/core/notificationdeferrer.h"
#include "kestan/feature/balloonvisibilityobserver.h"
#include "kestan/host/pump.h"
#include "kestan/read/namespaces.h"
#include "kestan/style/icon.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/liststyle.h"
#include "kestan/style/stylemap.h"
#include "kestan/style/stylesource.h"
#include "tests/style/styletest.h"
#include "tests/support/workers.h"

#include <array>
#include <functional>

namespace vorrel::kestan {

/// Documents that are read on several threads at once, as a client's loaders do.
class StyleThreadTest : public StyleTest {
protected:
  static constexpr int kWorkers = 3;
  static constexpr int kRounds = 5;
  using Documents = std::array<RefPtr<SchemaObject>, kWorkers>;

  static RefPtr<SchemaObject> ReadOnWorker(const QString& url, const QString& text) {
    const NotificationDeferrer deferrer; // as a client that merges the document later
    return ReadAt(url, text);
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

/// All that a renderer asks of a look.
QString Appearance(const AbstractFeature& feature, const std::function<QString(int mode)>& look) {
  QString text = QString::number(feature.HasSpecifiedHighlightStyle());
  for (const int mode : {kStyleNormal, kStyleHighlight}) {
    const StyleSources sources(feature, mode);
    const Icon& icon = *sources.GetStyle()->GetIconStyle()->GetIcon();
    text += look(mode) + icon.GetAbsoluteUrl() + icon.CreateIconKey().text +
            QString::number(sources.GetStyle()->GetIconStyle()->GetHotSpot().x);
    for (const RefPtr<ItemIcon>& item : sources.GetStyle()->GetListStyle()->GetItemIcons())
      text += item->GetAbsoluteUrl();
  }
  return text;
}

// The features share styles, and neighbours share what their styles make together.
TEST_F(StyleThreadTest, ThreadsAskDifferentFeaturesOfOneDocument) {
  constexpr int kFeatures = 60;
  const QString icon = "<IconStyle id='i%1'><Icon id='p%1'><href>http://h/%1.png</href>"
                       "<viewRefreshMode>onStop</viewRefreshMode></Icon></IconStyle>";
  const QString list = "<ListStyle><ItemIcon><href>%1.png</href></ItemIcon></ListStyle>";
  const QString line = "<LineStyle id='l'><width>5</width></LineStyle>";
  const QString inlines[] = {
      "<Style>" + line + "</Style>", "<Style>" + line + "</Style>",
      "<Style>" + icon.arg("own") + list.arg("own") + "</Style>",
      "<StyleMap><Pair><key>highlight</key><styleUrl>#t</styleUrl></Pair></StyleMap>", ""};
  const char* const shared[] = {"#s", "#s", "#m", "#n", "#gone"};
  QString content = "<Style id='s'>" + icon.arg("shared") + list.arg("shared") +
                    "<PolyStyle><fill>0</fill></PolyStyle></Style><Style id='t'/>"
                    "<StyleMap id='m'><Pair><key>normal</key><styleUrl>#s</styleUrl></Pair>"
                    "<Pair><key>highlight</key><Style>" +
                    line +
                    "</Style></Pair></StyleMap>"
                    "<StyleMap id='n'><Pair><key>normal</key><styleUrl>#m</styleUrl></Pair>"
                    "<Pair><key>highlight</key><styleUrl>#n</styleUrl></Pair></StyleMap>";
  for (int i = 0; i < kFeatures; ++i)
    content += "<Placemark><styleUrl>" + QLatin1String(shared[i / 7 % 5]) + "</styleUrl>" +
               inlines[i / 3 % 5] + "</Placemark>";
  auto document = ReadLocal(InDocument(content));
  const auto& folder = static_cast<const Document&>(*document);
  ASSERT_EQ(kFeatures, folder.GetChildCount());
  const auto appearance = [](const AbstractFeature& feature) {
    return Appearance(feature, [&](int mode) { return Look(feature, mode); });
  };
  for (int round = 0; round < 2 * kRounds; ++round) {
    Style::find("/dir/doc.kml", round % 2 == 0 ? "s" : "t")
        ->GetLineStyle()
        ->SetPhysicalWidth(static_cast<float>(round));
    // What threads see first has never been asked for, or was, before the change.
    QStringList expected;
    {
      const auto copy = document->clone(true, nullptr);
      for (int i = 0; i < kFeatures; ++i)
        expected += appearance(*static_cast<const Document&>(*copy).GetChild(i));
    }
    std::array<QStringList, kWorkers> answers;
    {
      Workers workers(kWorkers, [&](int number) {
        for (int i = (number + round) % kWorkers; i < kFeatures; i += kWorkers)
          answers[static_cast<std::size_t>(number)] += appearance(*folder.GetChild(i));
      });
      // Other documents come and go.
      workers.Finish([&] {
        const auto other = ReadAt("/dir/other.kml", InDocument(content));
        appearance(*static_cast<const Document&>(*other).GetChild(0));
      });
      if (round == 2 * kRounds - 1)
        document.reset(); // before the threads end
    }
    for (int number = 0; number < kWorkers; ++number) {
      for (int i = (number + round) % kWorkers, place = 0; i < kFeatures; i += kWorkers, ++place)
        EXPECT_EQ(expected[i], answers[static_cast<std::size_t>(number)][place]);
    }
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

} // namespace vorrel::kestan
