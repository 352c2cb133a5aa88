#include "kestan/core/threadscope.h"

#include "kestan/core/creationobserver.h"
#include "kestan/core/library.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/threadcontext.h"
#include "kestan/host/pump.h"
#include "kestan/host/semaphore.h"
#include "kestan/host/workerthread.h"
#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"
#include "tests/support/workers.h"

#include <atomic>
#include <functional>
#include <thread>

namespace vorrel::kestan {

using ThreadScopeTest = KmlTest;

namespace {

/// Writes down what it hears; `onPost` may do what a client does then.
class Log final : public ThreadScope::Observer {
public:
  Log(QString& text, const char* name) : text_(text), name_(QLatin1String(name)) {}

  void OnPreMerge() override { text_ += name_ + "( "; }
  void OnPostMerge() override { text_ += ")" + name_ + " "; }
  void OnMergeDropped() override {
    text_ += name_ + "! ";
    if (onDropped)
      onDropped();
  }

  std::function<void()> onDropped;

private:
  QString& text_;
  const QString name_;
};

class Births final : public CreationObserver {
public:
  explicit Births(std::function<void(SchemaObject&)> action)
      : CreationObserver(Probe::GetClassSchema()), action_(std::move(action)) {}
  void OnPostCreate(const Event& event) override { action_(*event.object); }

private:
  const std::function<void(SchemaObject&)> action_;
};

void BuildOnThread(ThreadScope::Observer* observer, const std::function<void()>& build) {
  std::thread([&] {
    const ThreadScope scope(observer);
    build();
  }).join();
}

void PumpToTheEnd(double seconds = 0.0) {
  while (Pump::Run(seconds) == 0.0) {
  }
}

SchemaObject* Find(int number) {
  return SchemaObject::find("http://a/b.kml", QString::number(number));
}

} // namespace

TEST_F(ThreadScopeTest, OnTheMainThreadItOnlyHoldsNoticesBack) {
  QString log;
  Births births([&](SchemaObject& object) {
    log += object.GetId() + " ";
    if (object.GetId() == "a")
      const ThreadScope inside; // its end has nothing to wait for
  });
  Log observer(log, "m");
  RefPtr<Probe> a;
  {
    ThreadScope scope(&observer, false);
    a = Probe::Make("a");
    ProbeSchema::GetSingleton().count.SetTypedObject(*a, 1);
    EXPECT_EQ(a.get(), SchemaObject::find(a->GetKmlId()));
    EXPECT_TRUE(scope.JoinMainThread());
    scope.LeaveMainThread();
    EXPECT_EQ("", log.toStdString());
  }
  EXPECT_EQ("m( a )m ", log.toStdString());
  EXPECT_TRUE(ThreadContext::GetCurrent()->notifyEnabled);
}

TEST_F(ThreadScopeTest, InEachSliceAnObjectIsStillTheWorkersOrFound) {
  constexpr int kCount = 2000;
  const ThreadContext* const main = ThreadContext::GetMain();
  mmvector<RefPtr<Probe>> former;
  for (int i = 0; i < kCount; i += 3)
    former.push_back(Probe::Make(QString::number(i)));
  mmvector<RefPtr<Probe>> built;
  QString log;
  Log observer(log, "w");
  BuildOnThread(&observer, [&] {
    for (int i = 0; i < kCount; ++i)
      built.push_back(Probe::Make(QString::number(i)));
  });
  mmvector<RefPtr<Probe>> late;
  int slices = 0;
  do {
    int found = 0;
    for (int i = 0; i < kCount; ++i) {
      const Probe* const probe = built[static_cast<std::size_t>(i)].get();
      if (!probe || probe->GetId() != QString::number(i))
        continue;
      const bool isMain = probe->GetMap() == main;
      ASSERT_EQ(isMain, Find(i) == probe) << i;
      ASSERT_TRUE(probe->IsInMap()) << i;
      ASSERT_EQ(i % 3 == 0 && !isMain, i % 3 == 0 && Find(i) != nullptr && Find(i) != probe) << i;
      found += isMain;
    }
    if (++slices % 7 == 0) { // meanwhile the client goes on, with either side
      const auto victim = static_cast<std::size_t>(slices * 37 % (kCount / 3) * 3 + 1);
      built[victim].reset();
      const auto renamed = static_cast<std::size_t>(slices * 53 % (kCount / 3) * 3 + 2);
      if (Probe* const probe = built[renamed].get()) {
        probe->GetSchema()
            .FindField("id", Namespace::kKml, nullptr)
            ->fromString(*probe, nullptr, nullptr, "new" + probe->GetId(), -1, nullptr);
        EXPECT_EQ(probe, SchemaObject::find(probe->GetKmlId()));
      }
      late.push_back(Probe::Make(QString::number(kCount + slices)));
    }
    EXPECT_TRUE(log.isEmpty() || found > kCount / 2);
  } while (Pump::Run(0) == 0.0);
  EXPECT_GT(slices, 50);
  EXPECT_EQ("w( )w ", log.toStdString());
  for (const auto& probe : late)
    EXPECT_EQ(probe.get(), SchemaObject::find(probe->GetKmlId()));
  for (const auto& probe : built)
    EXPECT_TRUE(!probe || SchemaObject::find(probe->GetKmlId()) == probe.get());
  for (const auto& probe : former)
    EXPECT_NE(probe.get(), SchemaObject::find(probe->GetKmlId())) << "displaced";
}

TEST_F(ThreadScopeTest, MergesComeWholeAndInTheOrderInWhichScopesEnd) {
  QString log;
  RefPtr<Probe> kept[4];
  RefPtr<Probe> victim;
  Births births([&](SchemaObject& object) {
    log += object.GetId() + " ";
    if (object.GetId() == "1")
      victim.reset();
    Pump::Run(1.0); // the next merge doesn't begin in the middle of this one
  });
  Log first(log, "A");
  Log second(log, "B");
  Log inner(log, "i");
  auto gone = std::make_unique<Log>(log, "gone");
  BuildOnThread(&first, [&] {
    kept[0] = Probe::Make("0");
    kept[1] = Probe::Make("1");
    {
      const ThreadScope scope(&inner);
      EXPECT_EQ(kept[0].get(), Find(0)) << "one context for both";
      kept[2] = Probe::Make("2");
      Probe::Make("dropped at once");
    }
    EXPECT_EQ(kept[2].get(), Find(2));
    victim = Probe::Make("victim");
  });
  BuildOnThread(gone.get(), [] {});
  BuildOnThread(&second, [&] { kept[3] = Probe::Make("2"); });
  gone.reset();
  EXPECT_EQ(nullptr, Find(0));
  PumpToTheEnd();
  EXPECT_EQ("A( 0 1 2 )A i( )i B( 2 )B ", log.toStdString());
  EXPECT_EQ(kept[3].get(), Find(2)) << "the last one counts";
}

TEST_F(ThreadScopeTest, AWorkerThatJoinsWorksInTheMainContext) {
  class Changes final : public ObjectObserver {
  public:
    using ObjectObserver::ObjectObserver;
    void OnFieldChanged(const FieldChangedEvent&) override { ++count; }
    void OnPreDelete(const PreDeleteEvent&) override { Detach(); }
    int count = 0;
  };
  const auto shared = Probe::Make("1");
  Changes changes(*shared);
  QString log;
  Births births([&](SchemaObject& object) { log += object.GetId() + " "; });
  const auto& count = ProbeSchema::GetSingleton().size;
  constexpr int kWorkers = 3;
  constexpr int kRounds = 20;
  mmvector<RefPtr<Probe>> made[kWorkers];
  {
    Workers workers(kWorkers, [&](int number, ThreadScope& scope) {
      scope.LeaveMainThread(); // nothing to leave
      for (int i = 0; i < kRounds; ++i) {
        made[number].push_back(Probe::Make(QStringLiteral("w%1.%2").arg(number).arg(i)));
        EXPECT_EQ(nullptr, Find(1));
        EXPECT_TRUE(scope.JoinMainThread());
        EXPECT_TRUE(scope.JoinMainThread());
        {
          ThreadScope inner;
          EXPECT_TRUE(inner.JoinMainThread());
          EXPECT_EQ(shared.get(), Find(1));
          EXPECT_EQ(made[number].back().get(), SchemaObject::find(made[number].back()->GetKmlId()));
        }
        count.SetTypedObject(*shared, count.get(*shared) + 1);
        made[number].push_back(Probe::Make(QStringLiteral("m%1.%2").arg(number).arg(i)));
        if (i % 2 == 0)
          scope.LeaveMainThread();
        scope.LeaveMainThread();
        EXPECT_NE(ThreadContext::GetMain(), ThreadContext::GetCurrent());
      }
      scope.JoinMainThread(); // left by the end of the scope
      count.SetTypedObject(*shared, count.get(*shared) + 1);
      scope.LeaveMainThread();
    });
    workers.Finish([] { Pump::Run(0.01); });
  }
  EXPECT_EQ(kWorkers * (kRounds + 1), count.get(*shared));
  EXPECT_EQ(kWorkers * (kRounds + 1), changes.count);
  PumpToTheEnd();
  EXPECT_EQ(kWorkers * kRounds * 2, log.count(' '));
  for (const auto& objects : made) {
    for (const auto& object : objects)
      EXPECT_EQ(object.get(), SchemaObject::find(object->GetKmlId()));
  }
}

// Whatever keeps the main thread from coming, the worker gets an answer and goes on by itself.
TEST_F(ThreadScopeTest, AJoinThatCannotBeIsRefused) {
  class Joiner final : public WorkerThread::Job {
  public:
    explicit Joiner(std::atomic<int>& refused) : Job("Joiner"), refused_(refused) {}
    void Run() override {
      ThreadScope scope;
      const auto own = Probe::Make("own");
      const bool isThere = scope.JoinMainThread();
      refused_ += !isThere;
      EXPECT_EQ(isThere, ThreadContext::GetMain() == ThreadContext::GetCurrent());
      EXPECT_EQ(own.get(), SchemaObject::find(own->GetKmlId()));
    }

  private:
    std::atomic<int>& refused_;
  };
  std::atomic<int> refused{0};
  {
    WorkerThread worker;
    RefPtr<Joiner>(new Joiner(refused))->AddToQueue(&worker);
    worker.WaitUntilIdle(); // by this thread
    EXPECT_EQ(1, refused);
    RefPtr<Joiner>(new Joiner(refused))->AddToQueue(&worker);
    while (refused < 2) {
      Pump::Clear();
      std::this_thread::yield();
    }
    RefPtr<Joiner>(new Joiner(refused))->AddToQueue(&worker);
  } // or by the end of the worker, which may not even have begun
  refused = 0;
  Semaphore isOpen;
  std::thread stopped([&] {
    ThreadScope scope;
    isOpen.post();
    refused += !scope.JoinMainThread();
    while (!scope.IsCancelled())
      std::this_thread::yield();
  });
  isOpen.wait();
  GShutdown(); // waits for the scope
  EXPECT_EQ(1, refused);
  stopped.join();
  std::thread([] {
    ThreadScope scope;
    EXPECT_FALSE(scope.IsOpen());
    EXPECT_FALSE(scope.JoinMainThread());
    EXPECT_TRUE(scope.IsCancelled());
  }).join();
}

TEST_F(ThreadScopeTest, TheStopDropsWhatIsNotMerged) {
  QString log;
  {
    RefPtr<Probe> begun;
    RefPtr<Probe> queued;
    Log first(log, "A");
    Log second(log, "B");
    first.onDropped = [&begun] { begun.reset(); };
    second.onDropped = [&queued] { queued.reset(); };
    mmvector<RefPtr<Probe>> many;
    BuildOnThread(&first, [&] {
      for (int i = 0; i < 200; ++i)
        many.push_back(Probe::Make(QString::number(i)));
      begun = many[0];
    });
    Pump::Run(0);
    EXPECT_TRUE(ThreadContext::GetMain()->IsMerging());
    BuildOnThread(&second, [&] { queued = Probe::Make("b"); });
    many.clear();
    GShutdown();
  }
  EXPECT_EQ("A! B! ", log.toStdString());
  EXPECT_EQ(0, Probe::s_alive);
  GInitialize();
  EXPECT_EQ(Pump::kIdle, Pump::Run(0));
  const auto again = Probe::Make("b");
  BuildOnThread(nullptr, [] { Probe::Make("c"); });
  PumpToTheEnd();
  EXPECT_EQ(again.get(), SchemaObject::find(again->GetKmlId()));
}

} // namespace vorrel::kestan
