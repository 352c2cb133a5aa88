// Documents that worker threads read, alone and several in one scope, and that the main thread
// takes in by small slices, while references wait across documents, jobs are cancelled, updates
// change what is there, observers end what they hear of, and the library stops at any moment.
// Nothing dangles, nobody is called twice or too late, and what came is written and read again.
//
// The parts of an input are divided by lines of "--". The first one is a line of operations, a
// letter each; the others are documents, and updates of them. Whatever a worker does is waited for,
// so that an input takes the same way each time.

#include "fuzz/support.h"
#include "kestan/core/kestanoptions.h"
#include "kestan/core/library.h"
#include "kestan/core/objectobserver.h"
#include "kestan/feature/abstractfolder.h"
#include "kestan/host/job.h"
#include "kestan/host/pump.h"
#include "kestan/link/networklinkcontrol.h"
#include "kestan/read/expathandler.h"
#include "kestan/read/loadobserver.h"
#include "kestan/read/loadobserverloader.h"
#include "kestan/read/parsejob.h"
#include "kestan/update/update.h"

#include <QSet>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

QString UrlOf(int document) { return QStringLiteral("http://example.com/%1.kml").arg(document); }

/// Holds a worker at the first error of a document, until that isn't wanted any more.
class Gate final : public IErrorHandler {
public:
  void OnParseError(ErrorReport&) override {
    if (!isClosed || System::IsMainThread()) {
      return;
    }
    isReached = true;
    while (isClosed && ThreadScope::GetSession() != 0) {
      std::this_thread::yield();
    }
  }

  std::atomic<bool> isClosed{false};
  std::atomic<bool> isReached{false};
};

/// A job that is called back in turn, and never after the library's stop.
class Job final : public ParseJob {
public:
  enum State { kWaits, kAnnounced, kMerged, kDropped };

  Job(WorkerThread& worker, int document, const QByteArray& text)
      : ParseJob(&worker, UrlOf(document), text, 2, nullptr, false) {}

  void Run() override {
    ParseJob::Run();
    hasRun = true;
  }
  void OnPreMerge() override { Go(state_ == kWaits, kAnnounced); }
  void OnPostMerge() override { Go(state_ == kAnnounced, kMerged); }
  void OnMergeDropped() override {
    Go(state_ == kWaits || state_ == kAnnounced, kDropped);
    ParseJob::OnMergeDropped();
  }
  bool IsMerged() const { return state_ == kMerged; }
  void EndAll() { hasEnded_ = true; }

  std::atomic<bool> hasRun{false};

private:
  void Go(bool isInTurn, State state) {
    if (!isInTurn || hasEnded_ || !System::IsMainThread()) {
      fuzz::Fail(QStringLiteral("a job was called back out of turn"));
    }
    state_ = state;
  }

  State state_ = kWaits;
  bool hasEnded_ = false;
};

class Loader final : public LoadObserverLoader {
public:
  void RequestLoad(const QString&) override {}
  bool HasLoadEnded(const QString& url) override { return ended.contains(url); }

  QSet<QString> ended;
};

/// Removes what changes, or the whole document, when it hears of a change.
class Remover final : public ObjectObserver {
public:
  Remover(SchemaObject& object, bool removesAll)
      : ObjectObserver(object), object_(&object), removesAll_(removesAll) {}
  ~Remover() override { SetObserved(nullptr); } // it may hold the object's last reference

  void OnFieldChanged(const FieldChangedEvent&) override { Act(nullptr); }
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override { Act(&event.changed); }
  void OnPreDelete(const PreDeleteEvent&) override { object_.reset(); }

private:
  void Act(SchemaObject* changed) {
    if (removesAll_) {
      object_.reset();
    } else if (changed && changed->isOfType(AbstractFeature::GetClassSchema())) {
      static_cast<AbstractFeature*>(changed)->SetParent(nullptr);
    }
  }

  RefPtr<SchemaObject> object_;
  const bool removesAll_;
};

class World {
public:
  explicit World(const QStringList& parts) {
    for (const QString& part : parts) {
      texts_.push_back(part.toUtf8());
    }
    Begin();
  }
  ~World() {
    Stop();
    ExpatHandler::SetDefaultErrorHandler(nullptr);
  }

  void Operate(QChar operation) {
    const unsigned letter = operation.unicode();
    if (texts_.empty()) {
      return;
    }
    if (letter >= 'a' && letter <= 'h') {
      Start(static_cast<int>(letter - 'a'));
    } else if (letter >= 'A' && letter <= 'H') {
      Cancel(letter - 'A');
    } else if (letter >= '0' && letter <= '9') {
      Turn(static_cast<int>(letter - '0') + 1);
    } else if (letter >= 'i' && letter <= 'l') {
      ReadInOneScope(static_cast<int>(letter - 'i'));
    } else if (letter >= 'm' && letter <= 'p') {
      ReadHere(static_cast<int>(letter - 'm'));
    } else if (letter == 'q' || letter == 'r') {
      Observe(letter == 'q');
    } else if (letter == 'w') {
      Wait();
    } else if (letter == 'x' && !jobs_.empty()) {
      jobs_.erase(jobs_.begin());
    } else if (letter >= 's' && letter <= 'v') {
      Interrupt(static_cast<int>(letter - 's'));
    } else if (letter == 'z') {
      Stop();
      Begin();
    }
  }

  /// Takes everything in, and looks at what came.
  void Finish() {
    Wait();
    while (Pump::Run(0.0) == 0.0) {
    }
    for (const RefPtr<Job>& job : jobs_) {
      if (!job->IsMerged()) {
        fuzz::Fail(QStringLiteral("a job has never ended"));
      }
      if (job->GetResult()) {
        Check(job->GetResult());
      }
    }
    for (const fuzz::Tree& tree : trees_) {
      Check(tree);
    }
  }

private:
  static void Check(const fuzz::Tree& tree) {
    const QByteArray written = fuzz::Write(tree);
    if (tree->isOfType(AbstractFeature::GetClassSchema()) && !fuzz::Read(written)) {
      fuzz::Fail(QStringLiteral("the reader refuses what was written:\n") +
                 QString::fromUtf8(written));
    }
  }

  const QByteArray& TextOf(int document) const {
    return texts_[static_cast<std::size_t>(document) % texts_.size()];
  }

  void Start(int document) {
    jobs_.push_back(new Job(workers_[document % 2], document, TextOf(document)));
    jobs_.back()->Start();
  }

  void Cancel(std::size_t job) {
    if (job < jobs_.size()) {
      jobs_[job]->Cancel();
    }
  }

  /// A job in the middle of its document is cancelled, or the library stops then.
  void Interrupt(int document) {
    Wait();
    gate_->isReached = false;
    gate_->isClosed = true;
    Start(document);
    const RefPtr<Job> job = jobs_.back();
    while (!gate_->isReached && !job->hasRun) {
      std::this_thread::yield();
    }
    if (document % 2 == 0) {
      job->Cancel();
      gate_->isClosed = false;
    } else {
      Stop();
      gate_->isClosed = false;
      Begin();
    }
  }

  void Wait() {
    for (WorkerThread& worker : workers_) {
      worker.WaitUntilIdle();
    }
  }

  void Turn(int count) {
    Wait(); // what the pump finds doesn't depend on time
    for (const RefPtr<Job>& job : jobs_) {
      loader_.ended.insert(job->GetUrl());
    }
    while (count-- > 0) {
      Pump::Run(0.0);
    }
  }

  /// Two documents of one thread, one of them in a scope inside.
  void ReadInOneScope(int document) {
    class Nested final : public WorkerThread::Job {
    public:
      Nested(World& world, int document) : Job("Nested"), world_(world), document_(document) {}
      void Run() override {
        const ThreadScope outer;
        if (outer.IsOpen()) {
          fuzz::Tree first = fuzz::Read(world_.TextOf(document_), UrlOf(document_));
          const ThreadScope inner;
          UnrefJob::UnrefOnMain(fuzz::Read(world_.TextOf(document_ + 1), UrlOf(document_ + 1)));
          UnrefJob::UnrefOnMain(std::move(first));
        }
      }

    private:
      World& world_;
      const int document_;
    };
    const RefPtr<Nested> job(new Nested(*this, document));
    job->AddToQueue(&workers_[document % 2]);
  }

  /// A document that the main thread reads; an update, or a control with updates, is applied.
  void ReadHere(int document) {
    const fuzz::Tree tree = fuzz::Read(TextOf(document), UrlOf(document));
    if (tree && tree->isOfType(Update::GetClassSchema())) {
      static_cast<Update&>(*tree).Apply(nullptr, 1.0F);
    } else if (tree && tree->isOfType(NetworkLinkControl::GetClassSchema())) {
      static_cast<NetworkLinkControl&>(*tree).ApplyUpdates(nullptr);
    } else if (tree) {
      trees_.push_back(tree);
    }
    loader_.ended.insert(UrlOf(document));
    LoadObserver::UpdateAllLater();
  }

  void Observe(bool removesAll) {
    for (const RefPtr<Job>& job : jobs_) {
      if (job->IsMerged() && job->GetResult()) {
        observers_.push_back(std::make_unique<Remover>(*job->GetResult(), removesAll));
      }
    }
  }

  void Begin() {
    GInitialize();
    KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
    ExpatHandler::SetDefaultErrorHandler(gate_.get());
  }

  /// With whatever is queued, running or not merged yet; what a client has, it drops before.
  void Stop() {
    observers_.clear();
    trees_.clear();
    jobs_.erase(std::remove_if(jobs_.begin(), jobs_.end(),
                               [](const RefPtr<Job>& job) { return job->IsMerged(); }),
                jobs_.end());
    GShutdown();
    for (const RefPtr<Job>& job : jobs_) {
      job->EndAll();
    }
    jobs_.clear();
    loader_.ended.clear();
  }

  std::vector<QByteArray> texts_;
  const RefPtr<Gate> gate_{new Gate};
  Loader loader_;
  std::vector<RefPtr<Job>> jobs_;
  std::vector<fuzz::Tree> trees_;
  std::vector<std::unique_ptr<Remover>> observers_;
  WorkerThread workers_[2]; // last: they end first
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QStringList parts =
      fuzz::Lines(data, size).join(QLatin1Char('\n')).split(QStringLiteral("\n--\n"));
  World world(parts.mid(1, 8));
  for (const QChar operation : parts.first().left(64)) {
    world.Operate(operation);
  }
  world.Finish();
  return 0;
}
