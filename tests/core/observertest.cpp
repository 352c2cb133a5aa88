#include "kestan/core/bitguard.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/threadcontext.h"
#include "kestan/core/watcher.h"
#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"
#include "tests/support/observers.h"

#include <functional>
#include <memory>
#include <utility>

namespace vorrel::kestan {

namespace {

const ProbeSchema& Fields() { return ProbeSchema::GetSingleton(); }

void Change(Probe& probe) { Fields().count.SetTypedObject(probe, 1); }

/// Writes its name into a log when news of the `count` of some object comes by, and does what a
/// test wants then.
class Recorder final : public ObjectObserver {
public:
  Recorder(SchemaObject* object, char name, QString& log)
      : ObjectObserver(object), name_(name), log_(log) {}

  std::function<void()> onChange;
  const Field* through = nullptr; ///< By which the latest news from below came.

  void OnFieldChanged(const FieldChangedEvent& event) override { Note(event.field); }
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override {
    through = event.GetObservedSubField();
    Note(event.field);
  }
  void OnPreDelete(const PreDeleteEvent&) override {
    log_ += QLatin1Char('~');
    log_ += QLatin1Char(name_);
  }

private:
  void Note(const Field& field) {
    if (&field != &Fields().count)
      return;
    log_ += QLatin1Char(name_);
    if (onChange)
      onChange();
  }

  const char name_;
  QString& log_;
};

/// An object with three observers.
class ObserverTest : public KmlTest {
protected:
  /// Who hears of a change of the object.
  QString Tell() {
    Change(*probe);
    return std::exchange(log, QString());
  }

  QString log;
  RefPtr<Probe> probe = Probe::Make();
  Recorder c{probe.get(), 'c', log}; // the latest is told first
  Recorder b{probe.get(), 'b', log};
  Recorder a{probe.get(), 'a', log};
};

} // namespace

using NoticeTest = KmlTest;

TEST_F(ObserverTest, TheLatestIsToldFirstAndADisabledOneNothing) {
  b.SetEnabled(false);
  EXPECT_EQ("ac", Tell());
}

TEST_F(ObserverTest, OnlyWhoHearsOfChangesCounts) {
  EXPECT_TRUE(probe->HasObservers());
  a.SetEnabled(false);
  b.SetEnabled(false);
  EXPECT_TRUE(probe->HasObservers());
  c.SetEnabled(false);
  const Watcher<Probe> watcher(probe.get());
  EXPECT_FALSE(probe->HasObservers());
  EXPECT_EQ(probe.get(), watcher.get());
  probe.reset();
  EXPECT_EQ(nullptr, watcher.get());
}

TEST_F(ObserverTest, ObserversComeAndGoWhileTheyAreTold) {
  std::unique_ptr<Recorder> late;
  a.onChange = [&] {
    b.SetObserved(nullptr);
    late = std::make_unique<Recorder>(probe.get(), 'n', log); // waits for the next time
    a.SetObserved(nullptr);
  };
  EXPECT_EQ("ac", Tell());
  late->onChange = [this] { c.SetObserved(nullptr); }; // all that follow
  EXPECT_EQ("n", Tell());
}

TEST_F(ObserverTest, ADeletedSubjectEndsTheDispatch) {
  b.onChange = [this] { probe.reset(); };
  EXPECT_EQ("ab~a~b~c", Tell());
  for (const Recorder* const observer : {&a, &b, &c})
    EXPECT_FALSE(observer->IsAttached());
}

TEST_F(ObserverTest, AFifthNestedDispatchIsDropped) {
  b.SetObserved(nullptr);
  c.SetObserved(nullptr);
  a.onChange = [this] {
    if (log.size() < 100)
      Change(*probe);
  };
  EXPECT_EQ("aaaa", Tell());
}

TEST_F(ObserverTest, ADeparturePutsAllNestedDispatchesRight) {
  a.onChange = [this] {
    if (log == "a")
      Change(*probe); // reaches b, which takes away the next step of both
  };
  b.onChange = [this] {
    b.SetObserved(nullptr);
    c.SetObserved(nullptr);
  };
  EXPECT_EQ("aab", Tell());
}

TEST_F(ObserverTest, AChangeClimbsToTheOwners) {
  const auto root = Probe::Make();
  const auto middle = Probe::Make();
  Fields().child.set(*root, middle.get(), 0);
  Fields().child.set(*middle, probe.get(), 0);
  Recorder top(root.get(), 't', log);
  EXPECT_EQ("abct", Tell());
  EXPECT_EQ(&Fields().child, top.through);
  EXPECT_EQ(probe->GetRevision(), root->GetRevision());

  auto revision = probe->GetRevision();
  ThreadContext::GetCurrent()->notifyEnabled = false;
  EXPECT_EQ("", Tell());
  ThreadContext::GetCurrent()->notifyEnabled = true;
  EXPECT_EQ(revision, probe->GetRevision());
  {
    const BitGuard guard(probe.get(), kBitNoFieldNotify, true);
    EXPECT_EQ("", Tell());
    EXPECT_NE(revision, probe->GetRevision()) << "the revision goes on";
  }
  EXPECT_EQ("abct", Tell());
}

TEST_F(NoticeTest, AClimbEndsWellWhateverIsDroppedOnItsWay) {
  struct Case {
    char observed; // whose observer drops
    char dropped;
    const char* log;
  };
  // The root holds the middle, and that the leaf, which changes.
  const Case cases[] = {{'l', 'l', "l~l"},   {'l', 'm', "l~m~l"},   {'l', 'r', "l~r~m~l"},
                        {'m', 'l', "lmr~l"}, {'m', 'm', "lm~m~l"},  {'m', 'r', "lm~r~m~l"},
                        {'r', 'l', "lmr~l"}, {'r', 'm', "lmr~m~l"}, {'r', 'r', "lmr~r~m~l"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.observed << " drops " << c.dropped);
    QString log;
    auto root = Probe::Make();
    Fields().child.set(*root, Probe::Make().get(), 0);
    Probe* middle = Fields().child.get(*root).get();
    Fields().child.set(*middle, Probe::Make().get(), 0);
    Probe* leaf = Fields().child.get(*middle).get();
    const auto drop = [&] {
      if (c.dropped == 'r')
        root.reset();
      else
        Fields().child.set(c.dropped == 'l' ? *middle : *root, nullptr, 0);
    };
    Recorder r(root.get(), 'r', log);
    Recorder m(middle, 'm', log);
    Recorder l(leaf, 'l', log);
    (c.observed == 'r' ? r : c.observed == 'm' ? m : l).onChange = drop;
    Change(*leaf);
    EXPECT_EQ(c.log, log);
  }
}

TEST_F(NoticeTest, CreationIsAnnouncedOnceAndDeferredToTheEndOfTheScope) {
  OnCreate probes(Probe::GetClassSchema());
  OnCreate all(SchemaObject::GetClassSchema());
  const auto first = Probe::Make();
  EXPECT_EQ(1, probes.seen);
  EXPECT_EQ(1, all.seen);
  RefPtr<Probe> kept;
  {
    const NotificationDeferrer outer;
    {
      const NotificationDeferrer inner;
      kept = Probe::Make();
      Probe::Make(); // nobody holds it: it dies unannounced
    }
    EXPECT_EQ(1, probes.seen);
  }
  EXPECT_EQ(2, probes.seen);
  EXPECT_EQ(2, Probe::s_alive);
  {
    const NotificationDisabler disabler;
    const auto silent = Probe::Make();
    EXPECT_FALSE(silent->GetBit(kBitPostCreated));
  }
  EXPECT_EQ(2, probes.seen);
}

TEST_F(NoticeTest, CreationObserversComeAndGoWhileTheyAreTold) {
  Probe::Make();
  std::unique_ptr<OnCreate> late;
  auto first = std::make_unique<OnCreate>(Probe::GetClassSchema());
  auto second = std::make_unique<OnCreate>(Probe::GetClassSchema());
  OnCreate third(Probe::GetClassSchema());
  second->deed = [&](const SchemaObject&) {
    first.reset();
    late = std::make_unique<OnCreate>(Probe::GetClassSchema());
    second.reset();
  };
  Probe::Make();
  EXPECT_EQ(1, third.seen) << "none is passed over";
  EXPECT_EQ(0, late->seen) << "who comes hears of the next one";
}

TEST_F(NoticeTest, DeferredNoticesMayBeAskedForWhileTheyAreGiven) {
  QString seen;
  OnCreate eager(Probe::GetClassSchema());
  eager.deed = [&](const SchemaObject& object) {
    seen += object.GetId();
    CreationObserver::NotifyDeferred();
  };
  RefPtr<Probe> probes[3];
  {
    const NotificationDeferrer deferrer;
    for (int i = 0; i < 3; ++i)
      probes[i] = Probe::Make(QString::number(i));
  }
  EXPECT_EQ("012", seen);
}

} // namespace vorrel::kestan
