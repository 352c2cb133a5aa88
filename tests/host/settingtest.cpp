#include "kestan/host/pump.h"
#include "kestan/host/settings.h"
#include "kestan/host/system.h"
#include "kestan/host/timer.h"

#include <gtest/gtest.h>

#include <thread>

using namespace vorrel;

namespace {

struct Counter final : SettingObserver {
  void OnSettingChanged(Setting& setting) override {
    ++count;
    last = setting.ToString();
  }
  int count = 0;
  QString last;
};

class SettingTest : public testing::Test {
protected:
  SettingTest() {
    System::SetMainThread();
    level.AddObserver(counter);
  }

  SettingGroup group{"Group"};
  IntSetting level{group, "level", 3};
  BoolSetting flag{group, "flag", false};
  StringSetting text{group, "text", QString()};
  Counter counter;
};

} // namespace

TEST_F(SettingTest, ObserversHearOfChangesOnlyAndOnTheMainThread) {
  EXPECT_FALSE(level.Set(3));
  EXPECT_TRUE(level.Set(4));
  EXPECT_EQ(1, counter.count);
  level.Reset();
  EXPECT_EQ(2, counter.count);
  EXPECT_EQ("3", counter.last);
  std::thread([this] { level.Set(9); }).join();
  EXPECT_EQ(9, level.Get());
  EXPECT_EQ(2, counter.count);
  Pump::Run(1.0);
  EXPECT_EQ(3, counter.count);
  EXPECT_EQ("9", counter.last);
}

TEST_F(SettingTest, ChangesOfAThreadWithoutPauseHoldUpNoNotice) {
  struct Next final : SyncMethod {
    explicit Next(const Counter& c) : SyncMethod("Next"), counter(c) {}
    void Execute() override { noticesBefore = counter.count; }
    const Counter& counter;
    int noticesBefore = -1;
  };
  Next next(counter);
  std::thread([this] { level.Set(8); }).join();
  Timer::Execute(next, 0.0);
  std::thread([this] { level.Set(9); }).join();
  Pump::Run(1.0);
  EXPECT_EQ(1, next.noticesBefore);
  EXPECT_EQ(1, counter.count);
  EXPECT_EQ("9", counter.last);
}

TEST_F(SettingTest, TheModifierOfTheScopeIsKept) {
  {
    const SettingModifierScope scope(SettingModifier::kUser);
    level.Set(6);
  }
  EXPECT_EQ(SettingModifier::kUser, level.GetModifier());
  level.Set(5);
  EXPECT_EQ(SettingModifier::kProgram, level.GetModifier());
}

TEST_F(SettingTest, AGroupFindsItsSettingsByNameAndSetsThemFromText) {
  ASSERT_EQ(3U, group.GetSettings().size());
  EXPECT_EQ(&flag, group.GetSettings()[1]);
  EXPECT_TRUE(group.Find("flag")->FromString(" TRUE "));
  EXPECT_TRUE(flag.Get());
  EXPECT_FALSE(group.Find("level")->FromString("high"));
  EXPECT_EQ(3, level.Get());
  {
    const IntSetting passing(group, "passing", 1);
    EXPECT_EQ(&passing, group.Find("passing"));
  }
  EXPECT_EQ(nullptr, group.Find("passing"));
}
