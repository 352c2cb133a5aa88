#include "kestan/core/creationobserver.h"
#include "kestan/core/kestanoptions.h"
#include "kestan/core/library.h"
#include "kestan/core/threadcontext.h"
#include "kestan/feature/document.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/pump.h"
#include "kestan/host/semaphore.h"
#include "kestan/read/expathandler.h"
#include "kestan/read/kmlparser.h"
#include "kestan/read/loadobserverloader.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/style.h"
#include "kestan/style/stylesource.h"
#include "tests/support/kmltest.h"

#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <functional>
#include <thread>

namespace vorrel::kestan {

namespace {

/// A job of a client that is told of its end.
class Job final : public ParseJob {
public:
  Job(WorkerThread* worker, const QString& url, const QByteArray& text)
      : ParseJob(worker, url, text, 2, nullptr, false) {}

  void OnPreMerge() override {
    isFound = GetResult() && SchemaObject::find(GetResult()->GetKmlId());
  }
  void OnPostMerge() override {
    EXPECT_TRUE(System::IsMainThread());
    ++calls;
  }

  bool isFound = false;
  int calls = 0;
};

QByteArray InDocument(const QByteArray& content) {
  return "<kml xmlns:gx='http://www.vorrel.com/kml/ext/2.2'><Document id='d'>" + content +
         "</Document></kml>";
}

QByteArray Large(int features) {
  QByteArray content;
  for (int i = 0; i < features; ++i)
    content += "<Placemark id='p" + QByteArray::number(i) +
               "'><styleUrl>#s</styleUrl><strange/><Point><coordinates>1,2</coordinates></Point>"
               "</Placemark>";
  return InDocument(content + "<Style id='s'><LineStyle><width>3</width></LineStyle></Style>");
}

} // namespace

class ParseJobThreadTest : public KmlTest {
protected:
  static void PumpUntil(const std::function<bool()>& isDone, double seconds = 0.0) {
    while (!isDone()) {
      Pump::Run(seconds);
      std::this_thread::yield();
    }
  }
  static void RunToTheEnd(const std::vector<RefPtr<Job>>& jobs, double seconds = 0.0) {
    for (const RefPtr<Job>& job : jobs)
      PumpUntil([&] { return job->calls > 0; }, seconds);
  }
  static int GetFirstWidth(const SchemaObject& document) {
    return GetWidth(*static_cast<const Document&>(document).GetChild(0));
  }
  static int GetWidth(const AbstractFeature& feature) {
    const StyleSources look(feature, kStyleNormal);
    return static_cast<int>(look.GetStyle()->GetLineStyle()->GetWidth());
  }
};

TEST_F(ParseJobThreadTest, TheCallbackGetsTheFeatureOrTheError) {
  QByteArray archive;
  {
    QTemporaryDir folder;
    const auto document = Read<Document>(InDocument("<name>packed</name>"));
    EXPECT_EQ(QString(), document->WriteKmlFile(folder.filePath("a.kmz")));
    QFile file(folder.filePath("a.kmz"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    archive = file.readAll();
  }
  struct Case {
    QByteArray bytes;
    QString name; // of the feature; null for none
    const char* error;
  };
  const Case cases[] = {
      {InDocument("<name>plain</name>"), "plain", ""},
      {archive, "packed", ""},
      {"<kml><Document>", QString(), "Parse error at line 1, column 15:\n\n\tno element found"},
      {"<Style/>", QString(), ""},
      {"", QString(), "Parse error at line 1, column 0:\n\n\tno element found"},
  };
  WorkerThread thread;
  for (WorkerThread* worker : {static_cast<WorkerThread*>(nullptr), &thread}) {
    SCOPED_TRACE(worker != nullptr);
    KmlParser parser(worker);
    std::size_t place = 0;
    for (const Case& c : cases) {
      parser.ParseKmlOrKmz(c.bytes, 2, [&](const QString& error, AbstractFeature* feature) {
        EXPECT_EQ(&c, &cases[place++]) << "in the order of the calls";
        EXPECT_TRUE(System::IsMainThread());
        EXPECT_EQ(c.error, error.toStdString());
        EXPECT_EQ(!c.name.isNull(), feature != nullptr);
        EXPECT_EQ(c.name, feature ? feature->GetName() : QString());
      });
    }
    PumpUntil([&] { return place == std::size(cases); });
  }
}

TEST_F(ParseJobThreadTest, AWorkerReadsADocumentAsTheMainThreadDoes) {
  const QByteArray text = ReadData("sample.kml");
  QString expected;
  int width = 0;
  {
    const auto here = ReadAt("/dir/a.kml", text);
    expected = Write(*here);
    width = GetFirstWidth(*here);
  }
  WorkerThread worker;
  const RefPtr<Job> job(new Job(&worker, "/dir/a.kml", text));
  job->Start();
  RunToTheEnd({job});
  ASSERT_TRUE(job->GetResult()) << job->GetErrorText().toStdString();
  EXPECT_EQ(ParseJob::kGood, job->GetStatus());
  EXPECT_EQ(expected, Write(*job->GetResult()));
  EXPECT_EQ(width, GetFirstWidth(*job->GetResult()));
  // What is changed now is seen, as if the main thread had read the document.
  const auto& document = static_cast<const Document&>(*job->GetResult());
  const RefPtr<Style> style(new Style(KmlId("late", "/dir/a.kml"), QString()));
  style->GetLineStyle()->SetWidth(9);
  AbstractFeature& feature = *document.GetChild(document.GetChildCount() - 1);
  feature.SetStyleUrl("#late");
  EXPECT_EQ(9, GetWidth(feature));
}

// Each document refers to the next one's style, and the last to the main thread's.
TEST_F(ParseJobThreadTest, ReferencesBetweenDocumentsOfAllThreadsAreResolved) {
  constexpr int kDocuments = 24;
  class Loader final : public LoadObserverLoader {
  public:
    void RequestLoad(const QString&) override { ++requests; }
    bool HasLoadEnded(const QString& url) override { return ended.contains(url); }
    std::atomic<int> requests{0};
    QStringList ended;
  };
  class Counter final : public CreationObserver {
  public:
    using CreationObserver::CreationObserver;
    void OnPostCreate(const Event&) override { ++seen; }
    std::atomic<int> seen{0};
  };
  const auto url = [](int i) { return QStringLiteral("/dir/%1.kml").arg(i); };
  Counter anywhere(Style::GetClassSchema(), CreationObserver::kAnyThread);
  Counter here(Style::GetClassSchema());
  Loader loader;
  WorkerThread workers[2];
  std::vector<RefPtr<Job>> jobs;
  for (int round = 0; round < 2; ++round) { // the second round displaces the first
    for (int i = 0; i < kDocuments; ++i) {
      const QByteArray width = QByteArray::number(i + 100 * round);
      const QByteArray next = QByteArray::number(i + 1);
      jobs.push_back(new Job(
          &workers[i % 2], url(i),
          InDocument("<Placemark><styleUrl>" + next +
                     ".kml#s</styleUrl></Placemark>"
                     "<Placemark id='missing'><styleUrl>" +
                     next + ".kml#none</styleUrl></Placemark><Style id='s'><LineStyle><width>" +
                     width + "</width></LineStyle></Style>")));
      jobs.back()->Start();
    }
    const auto last = ReadAt(url(kDocuments), InDocument("<Style id='s'><LineStyle><width>77"
                                                         "</width></LineStyle></Style>"));
    RunToTheEnd(jobs);
    for (std::size_t i = 0; i < kDocuments; ++i) {
      const auto& document =
          static_cast<const Document&>(*jobs[kDocuments * round + i]->GetResult());
      EXPECT_TRUE(jobs[kDocuments * round + i]->isFound);
      EXPECT_EQ(&document, SchemaObject::find(document.GetKmlId()));
      const int width = i + 1 == kDocuments ? 77 : static_cast<int>(i) + 1;
      EXPECT_TRUE(round > 0 || width == GetFirstWidth(document));
      EXPECT_FALSE(document.GetChild(1)->GetBit(kBitLoadFailed));
    }
    EXPECT_EQ((kDocuments + 1) * (round + 1), anywhere.seen);
    EXPECT_EQ((kDocuments + 1) * (round + 1), here.seen);
  }
  EXPECT_GE(loader.requests, 2 * kDocuments);
  // They have all come without the other id: a merge makes it known, and so does the reader here.
  for (int i = 0; i < kDocuments; ++i)
    loader.ended += url(i);
  const RefPtr<Job> one(new Job(&workers[0], "/dir/other.kml", InDocument("")));
  one->Start();
  RunToTheEnd({one});
  loader.ended += url(kDocuments);
  ReadAt("/dir/other.kml", QString(InDocument("")));
  while (Pump::Run(0) == 0.0) {
  }
  for (const RefPtr<Job>& job : jobs)
    EXPECT_TRUE(
        static_cast<const Document&>(*job->GetResult()).GetChild(1)->GetBit(kBitLoadFailed));
}

TEST_F(ParseJobThreadTest, WhatIsNotWantedAnyMoreIsCutShort) {
  KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
  /// Holds the parser until it's told to go on, or the library is about to stop.
  class Gate final : public IErrorHandler {
  public:
    void OnParseError(ErrorReport&) override {
      if (++errors > 1)
        return;
      isReading.post();
      while (!mayGoOn && ThreadScope::GetSession() != 0)
        std::this_thread::yield();
    }
    std::atomic<int> errors{0};
    std::atomic<bool> mayGoOn{false};
    Semaphore isReading;
  };
  constexpr int kFeatures = 20000;
  const QByteArray text = Large(kFeatures);
  const QByteArray plain = InDocument("<Placemark id='p'/><Style id='s'/>");
  int calls = 0;
  const auto count = [&calls](const QString&, AbstractFeature*) { ++calls; };
  WorkerThread worker;
  WorkerThread other;
  {
    const RefPtr<Gate> gate(new Gate);
    ExpatHandler::SetDefaultErrorHandler(gate.get());
    std::vector<RefPtr<Job>> jobs;
    for (const char* const url : {"/dir/a.kml", "/dir/b.kml"}) { // one runs, one waits
      jobs.push_back(new Job(&worker, url, text));
      jobs.back()->Start();
    }
    auto parser = std::make_unique<KmlParser>(&worker);
    parser->ParseKmlOrKmz(text, 2, count);
    gate->isReading.wait();
    for (const RefPtr<Job>& job : jobs)
      job->Cancel();
    parser.reset();
    gate->mayGoOn = true;
    RunToTheEnd(jobs);
    for (const RefPtr<Job>& job : jobs) {
      EXPECT_EQ("Reading the document was cancelled", job->GetErrorText().toStdString());
      EXPECT_EQ(ParseJob::kFailed, job->GetStatus());
      EXPECT_FALSE(job->GetResult());
    }
    EXPECT_LT(gate->errors, kFeatures);
    // A parser may go in its callback.
    parser = std::make_unique<KmlParser>(&worker);
    for (int i = 0; i < 3; ++i) {
      parser->ParseKmlOrKmz(plain, 2, [&](const QString&, AbstractFeature* feature) {
        ++calls;
        parser.reset();
        EXPECT_TRUE(feature && feature->GetRefCount() > 0);
      });
    }
    PumpUntil([&] { return calls > 0; });
    worker.WaitUntilIdle();
    while (Pump::Run(0) == 0.0) {
    }
    EXPECT_EQ(1, calls);
  }
  {
    KmlParser first(&worker);
    for (int i = 0; i < 5; ++i)
      first.ParseKmlOrKmz(plain, 2, count);
    worker.WaitUntilIdle();
    Pump::Run(0); // one is merged in part, the others aren't
    const RefPtr<Gate> gate(new Gate);
    ExpatHandler::SetDefaultErrorHandler(gate.get());
    KmlParser second(&other);
    second.ParseKmlOrKmz(text, 2, count);
    for (int i = 0; i < 5; ++i)
      second.ParseKmlOrKmz(plain, 2, count);
    gate->isReading.wait();
    const int before = calls;
    GShutdown();
    EXPECT_LT(gate->errors, kFeatures);
    EXPECT_EQ(Pump::kIdle, Pump::Run(0));
    GInitialize(); // what was queued belongs to the time before
    ExpatHandler::SetDefaultErrorHandler(nullptr);
    other.WaitUntilIdle();
    EXPECT_EQ(Pump::kIdle, Pump::Run(0));
    EXPECT_EQ(before, calls);
    second.ParseKmlOrKmz(plain, 2, count);
    PumpUntil([&] { return calls > before; });
  }
}

} // namespace vorrel::kestan
