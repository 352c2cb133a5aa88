#include "kestan/host/observer.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

using namespace vorrel;

namespace {

/// Writes its name into a log when it is told, and then does something else.
class Listener final : public Observer {
public:
  Listener(std::string& log, char name) : log_(log), name_(name) {}

  void Tell() {
    log_ += name_;
    if (action)
      action();
  }

  std::function<void()> action;

private:
  std::string& log_;
  const char name_;
};

class ObserverTest : public testing::Test {
protected:
  ObserverTest() {
    for (Listener* const listener : {&c, &b, &a}) // the latest is told first
      list->Add(*listener);
  }

  std::string Dispatch() {
    list->Dispatch(&Tell);
    return log;
  }
  static void Tell(Observer& observer) { static_cast<Listener&>(observer).Tell(); }

  std::string log;
  std::unique_ptr<ObserverList> list = std::make_unique<ObserverList>();
  Listener a{log, 'a'};
  Listener b{log, 'b'};
  Listener c{log, 'c'};
};

} // namespace

TEST_F(ObserverTest, TellsTheLatestFirstAndPassesOverTheDisabled) {
  b.SetEnabled(false);
  EXPECT_EQ("ac", Dispatch());
  ObserverList other;
  other.Add(a); // an observer hangs on one list only
  EXPECT_EQ("acc", Dispatch());
}

TEST_F(ObserverTest, ObserversLeaveAndComeInTheMiddle) {
  Listener late(log, 'n');
  a.action = [&] {
    a.Detach();
    list->Add(late); // waits for the next time
  };
  EXPECT_EQ("abc", Dispatch());
  log.clear();
  late.action = [this] {
    b.Detach(); // all that follow
    c.Detach();
  };
  EXPECT_EQ("n", Dispatch());
}

TEST_F(ObserverTest, TheSubjectCanEndInTheMiddle) {
  b.action = [this] { list.reset(); };
  EXPECT_EQ("ab", Dispatch());
  for (const Listener* const listener : {&a, &b, &c})
    EXPECT_FALSE(listener->IsAttached());
}

TEST_F(ObserverTest, TheFifthLevelIsLeftOut) {
  c.Detach();
  b.Detach();
  a.action = [this] { list->Dispatch(&Tell); };
  EXPECT_EQ("aaaa", Dispatch());
}

TEST_F(ObserverTest, ADeparturePutsAllLevelsRight) {
  bool nested = false;
  a.action = [&] {
    if (nested)
      return;
    nested = true;
    list->Dispatch(&Tell); // reaches b, which takes away the next step of both levels
  };
  b.action = [this] {
    b.Detach();
    c.Detach();
  };
  EXPECT_EQ("aab", Dispatch());
}
