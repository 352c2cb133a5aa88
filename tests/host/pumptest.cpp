#include "kestan/host/pump.h"
#include "kestan/host/job.h"
#include "kestan/host/semaphore.h"
#include "kestan/host/syncmethod.h"
#include "kestan/host/system.h"
#include "kestan/host/timer.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>

using namespace vorrel;

namespace {

constexpr double kLong = 3600.0;

class Call final : public SyncMethod {
public:
  explicit Call(std::function<void()> action) : SyncMethod("Call"), action_(std::move(action)) {}

private:
  void Execute() override { action_(); }

  const std::function<void()> action_;
};

class Ticker final : public Timer {
public:
  explicit Ticker(std::function<void()> action) : Timer("Ticker"), action_(std::move(action)) {}

private:
  void Fire() override { action_(); }

  const std::function<void()> action_;
};

class Slices final : public AbstractJob {
public:
  Slices(std::string& log, char name, int slices)
      : AbstractJob("Slices"), log_(log), name_(name), left_(slices) {}

  Result Run(const IJobContinuator& continuator, IJobContainer& container) override {
    log_ += name_;
    mayGoOn = continuator.ShouldContinue();
    if (--left_ > 0)
      return kRunAgain;
    if (follower)
      container.AddJob(follower);
    return kDone;
  }

  RefPtr<AbstractJob> follower;
  bool mayGoOn = true;

private:
  std::string& log_;
  const char name_;
  int left_;
};

class PumpTest : public testing::Test {
protected:
  PumpTest() { System::SetMainThread(); }
  ~PumpTest() override {
    Pump::SetWaker(nullptr);
    Pump::Clear();
  }

  Call* NewCall(char name) {
    auto* const call = new Call([this, name] { log += name; });
    call->SetAutoDelete(true);
    return call;
  }

  std::string log;
};

} // namespace

TEST_F(PumpTest, RunsWhatIsDueInTheOrderOfTime) {
  EXPECT_EQ(Pump::kIdle, Pump::Run(kLong));
  Timer::Execute(NewCall('a'), 0);
  Timer::Execute(NewCall('b'), -5); // no earlier than now
  Timer::Execute(NewCall('z'), kLong);
  const double next = Pump::Run(kLong);
  EXPECT_EQ("ab", log);
  EXPECT_GT(next, kLong - 600.0);
  EXPECT_LE(next, kLong);
}

TEST_F(PumpTest, WithoutTimeItStillMovesOn) {
  for (const char name : {'a', 'b'})
    Timer::Execute(NewCall(name), 0);
  const RefPtr<Slices> job(new Slices(log, 'j', 2));
  GetDefaultJobScheduler().AddJob(job);
  EXPECT_EQ(0.0, Pump::Run(0));
  EXPECT_EQ("aj", log);
  EXPECT_FALSE(job->mayGoOn);
  EXPECT_EQ(Pump::kIdle, Pump::Run(0));
  EXPECT_EQ("ajbj", log);
}

TEST_F(PumpTest, WhatIsAddedMeanwhileWaits) {
  Call again([&] {
    log += 'r';
    Timer::Execute(again, 0);
  });
  Timer::Execute(again, 0);
  EXPECT_EQ(0.0, Pump::Run(kLong));
  EXPECT_EQ("r", log);
}

TEST_F(PumpTest, JobsTakeTurnsUntilTheyAreDone) {
  IJobContainer& scheduler = GetDefaultJobScheduler();
  const RefPtr<Slices> first(new Slices(log, 'a', 3));
  scheduler.AddJob(first);
  scheduler.AddJob(new Slices(log, 'b', 1));
  first->follower = new Slices(log, 'c', 1);
  EXPECT_EQ(0.0, Pump::Run(kLong));
  EXPECT_EQ("ab", log);
  EXPECT_TRUE(first->mayGoOn);
  Pump::Run(kLong);
  EXPECT_EQ(0.0, Pump::Run(kLong));
  EXPECT_EQ("abaa", log);
  EXPECT_EQ(1, first->GetRefCount());
  EXPECT_EQ(Pump::kIdle, Pump::Run(kLong));
  EXPECT_EQ("abaac", log);
}

TEST_F(PumpTest, ACallbackCanRunThePump) {
  GetDefaultJobScheduler().AddJob(new Slices(log, 'j', 1));
  Call nested([this] {
    log += 'n';
    Pump::Run(kLong);
  });
  Timer::Execute(nested, 0);
  Timer::Execute(NewCall('a'), 0);
  Pump::Run(kLong);
  EXPECT_EQ("naj", log);
}

TEST_F(PumpTest, TimersRepeatStopAndDeleteEachOther) {
  Ticker ticker([&] {
    log += 't';
    if (log == "ttt")
      ticker.Stop();
  });
  ticker.Start(0, false);
  EXPECT_EQ(0.0, Pump::Run(kLong));
  Pump::Run(kLong);
  EXPECT_TRUE(ticker.IsActive());
  Pump::Run(kLong);
  EXPECT_FALSE(ticker.IsActive());
  ticker.Start(0, true);
  EXPECT_EQ(Pump::kIdle, Pump::Run(kLong));
  EXPECT_EQ("tttt", log);

  auto deleted = std::make_unique<Ticker>([this] { log += 'd'; });
  Ticker deleting([&] { deleted.reset(); });
  deleted->Start(0, false);
  deleting.Start(0, true);
  Pump::Run(kLong);
  EXPECT_EQ(Pump::kIdle, Pump::Run(kLong));
  EXPECT_EQ("ttttd", log);
}

TEST_F(PumpTest, MethodsThatWaitAreDroppedWithTheirOwnerOrTheQueue) {
  {
    Call call([this] { log += 'x'; });
    Timer::Execute(call, 0);
    EXPECT_TRUE(call.IsPending());
  }
  const auto held = std::make_shared<int>();
  auto* const dropped = new Call([held] {});
  dropped->SetAutoDelete(true);
  Timer::Execute(dropped, 0);
  Pump::Clear();
  EXPECT_EQ(1, held.use_count());
  EXPECT_EQ(Pump::kIdle, Pump::Run(kLong));
  EXPECT_EQ("", log);
}

TEST_F(PumpTest, TheWakerIsCalledWhenSomethingIsDueSooner) {
  int woken = 0;
  Pump::SetWaker([&woken] { ++woken; });
  Ticker late([] {});
  Ticker later([] {});
  late.Start(kLong, true);
  later.Start(2 * kLong, true);
  EXPECT_EQ(1, woken);
  Timer::Execute(NewCall('a'), 0);
  EXPECT_EQ(2, woken);
  GetDefaultJobScheduler().AddJob(new Slices(log, 'j', 1));
  EXPECT_EQ(3, woken);
  // Whoever comes late hears of what waits already.
  int wokenLate = 0;
  Pump::SetWaker([&wokenLate] { ++wokenLate; });
  EXPECT_EQ(1, wokenLate);
}

TEST_F(PumpTest, WhatAWorkerLetsGoOfEndsOnTheMainThread) {
  struct Object final : AtomicReferent {
    explicit Object(System::ThreadId& thread) : endedOn(thread) {}
    ~Object() override { endedOn = System::GetCurrentThread(); }
    System::ThreadId& endedOn;
  };
  System::ThreadId endedOn = System::kInvalidThreadId;
  std::thread([&] { UnrefJob::UnrefOnMain(RefPtr<Object>(new Object(endedOn))); }).join();
  EXPECT_EQ(System::kInvalidThreadId, endedOn);
  Pump::Run(kLong);
  EXPECT_EQ(System::GetCurrentThread(), endedOn);
}

TEST_F(PumpTest, OnlyTheMainThreadRunsThings) {
  Semaphore woken;
  Pump::SetWaker([&woken] { woken.post(); });
  System::ThreadId ranOn = System::kInvalidThreadId;
  Semaphore arrived;
  Semaphore leave;
  std::thread worker([&] {
    EXPECT_EQ(Pump::kIdle, Pump::Run(kLong));
    // The way in which a worker borrows the main thread: it ends the method as soon as it is let
    // go, while the main thread may still be inside.
    auto borrowed = std::make_unique<Call>([&] {
      ranOn = System::GetCurrentThread();
      arrived.post();
      leave.wait();
      arrived.post();
    });
    Timer::Execute(*borrowed, 0);
    arrived.wait();
    leave.post();
    arrived.wait();
    borrowed.reset();
  });
  woken.wait();
  Pump::Run(kLong);
  worker.join();
  EXPECT_EQ(System::GetCurrentThread(), ranOn);
}
