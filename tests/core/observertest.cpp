#include "kestan/core/creationobserver.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objectobserver.h"
#include "kestan/core/threadcontext.h"
#include "kestan/core/watcher.h"
#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"

#include <functional>

namespace vorrel::kestan {

using ObserverTest = KmlTest;

namespace {

const ProbeSchema& Fields() { return ProbeSchema::GetSingleton(); }

void Change(Probe& probe) { Fields().count.SetTypedObject(probe, 1); }

/// Writes its name into a log, and does what a test wants then.
class Recorder final : public ObjectObserver {
public:
  Recorder(SchemaObject* object, QString name, QString& log)
      : ObjectObserver(object), name_(std::move(name)), log_(log) {}

  std::function<void()> onChange;

  void OnFieldChanged(const FieldChangedEvent&) override {
    log_ += name_;
    if (onChange)
      onChange();
  }
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override {
    log_ += name_ + ">" + event.GetObservedSubField()->GetName() + ">" + event.field.GetName();
  }
  void OnPreDelete(const PreDeleteEvent&) override { log_ += "~" + name_; }

private:
  QString name_;
  QString& log_;
};

/// Notes that news of the `count` of some object came by, and the end of its own.
class Climber final : public ObjectObserver {
public:
  Climber(SchemaObject* object, char name, QString& log, std::function<void(char)> act)
      : ObjectObserver(object), name_(name), log_(log), act_(std::move(act)) {}

  void OnFieldChanged(const FieldChangedEvent& event) override { Note(event.field); }
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override { Note(event.field); }
  void OnPreDelete(const PreDeleteEvent&) override {
    log_ += QStringLiteral("~") + QLatin1Char(name_);
  }

private:
  void Note(const Field& field) {
    if (&field != &Fields().count)
      return;
    log_ += QLatin1Char(name_);
    act_(name_);
  }

  char name_;
  QString& log_;
  std::function<void(char)> act_;
};

class Counter final : public CreationObserver {
public:
  using CreationObserver::CreationObserver;
  int seen = 0;
  void OnPostCreate(const Event&) override { ++seen; }
};

} // namespace

TEST_F(ObserverTest, TheLatestObserverHearsFirstAndADisabledOneNothing) {
  QString log;
  const auto probe = Probe::Make();
  Recorder a(probe.get(), "a", log);
  Recorder b(probe.get(), "b", log);
  Recorder c(probe.get(), "c", log);
  b.SetEnabled(false);
  Change(*probe);
  EXPECT_EQ("ca", log);
}

TEST_F(ObserverTest, ObserversComeAndGoWhileTheyAreTold) {
  QString log;
  const auto probe = Probe::Make();
  Recorder a(probe.get(), "a", log);
  auto b = std::make_unique<Recorder>(probe.get(), "b", log);
  Recorder c(probe.get(), "c", log);
  std::unique_ptr<Recorder> late;
  c.onChange = [&] {
    b.reset();
    late = std::make_unique<Recorder>(probe.get(), "d", log);
    c.SetObserved(nullptr);
  };
  Change(*probe);
  EXPECT_EQ("ca", log);
  Change(*probe);
  EXPECT_EQ("cada", log);
}

TEST_F(ObserverTest, ADeletedSubjectEndsTheDispatch) {
  QString log;
  auto probe = Probe::Make();
  Recorder a(probe.get(), "a", log);
  Recorder b(probe.get(), "b", log);
  b.onChange = [&] { probe.reset(); };
  Change(*probe);
  EXPECT_EQ("b~b~a", log);
  EXPECT_FALSE(a.IsAttached());
}

TEST_F(ObserverTest, AFifthNestedDispatchIsDropped) {
  QString log;
  const auto probe = Probe::Make();
  Recorder a(probe.get(), "a", log);
  a.onChange = [&] {
    if (log.size() < 100)
      Change(*probe);
  };
  Change(*probe);
  EXPECT_EQ("aaaa", log);
}

TEST_F(ObserverTest, AChangeClimbsToTheOwners) {
  QString log;
  const auto root = Probe::Make();
  const auto middle = Probe::Make();
  const auto leaf = Probe::Make();
  Fields().child.set(*root, middle.get(), 0);
  Fields().child.set(*middle, leaf.get(), 0);
  Recorder a(root.get(), "a", log);
  Recorder b(leaf.get(), "b", log);
  Change(*leaf);
  EXPECT_EQ("ba>child>count", log);
  EXPECT_EQ(leaf->GetRevision(), root->GetRevision());

  const auto revision = leaf->GetRevision();
  ThreadContext::GetCurrent()->notifyEnabled = false;
  Change(*leaf);
  ThreadContext::GetCurrent()->notifyEnabled = true;
  EXPECT_EQ(revision, leaf->GetRevision());
}

TEST_F(ObserverTest, AClimbEndsWellWhateverIsDroppedOnItsWay) {
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
    const auto act = [&](char name) {
      if (name != c.observed)
        return;
      if (c.dropped == 'r')
        root.reset();
      else
        Fields().child.set(c.dropped == 'l' ? *middle : *root, nullptr, 0);
    };
    const Climber r(root.get(), 'r', log, act);
    const Climber m(middle, 'm', log, act);
    const Climber l(leaf, 'l', log, act);
    Change(*leaf);
    EXPECT_EQ(c.log, log);
  }
}

TEST_F(ObserverTest, AWatcherTurnsNullWithItsObject) {
  auto probe = Probe::Make();
  const Watcher<Probe> watcher(probe.get());
  EXPECT_EQ(probe.get(), watcher.get());
  probe.reset();
  EXPECT_EQ(nullptr, watcher.get());
}

TEST_F(ObserverTest, CreationIsAnnouncedOnceAndDeferredToTheEndOfTheScope) {
  Counter probes(Probe::GetClassSchema());
  Counter all(SchemaObject::GetClassSchema());
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

TEST_F(ObserverTest, DeferredNoticesMayBeAskedForWhileTheyAreGiven) {
  class Eager final : public CreationObserver {
  public:
    using CreationObserver::CreationObserver;
    void OnPostCreate(const Event& event) override {
      seen += event.object->GetId();
      CreationObserver::NotifyDeferred();
    }
    QString seen;
  };
  Eager eager(Probe::GetClassSchema());
  RefPtr<Probe> probes[3];
  {
    const NotificationDeferrer deferrer;
    for (int i = 0; i < 3; ++i)
      probes[i] = Probe::Make(QString::number(i));
  }
  EXPECT_EQ("012", eager.seen);
}

} // namespace vorrel::kestan
