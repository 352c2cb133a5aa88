#include "kestan/core/creationobserver.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objectobserver.h"
#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"
#include "tests/support/workers.h"

#include <algorithm>
#include <array>
#include <atomic>

namespace vorrel::kestan {

using CoreThreadTest = KmlTest;

namespace {

constexpr int kWorkers = 3;
constexpr int kObjects = 200;

class Counter final : public CreationObserver {
public:
  using CreationObserver::CreationObserver;
  void OnPostCreate(const Event&) override { ++seen; }

  std::atomic<int> seen{0};
};

} // namespace

TEST_F(CoreThreadTest, ObserversOfAClassComeAndGoWhileWorkersBuild) {
  const Counter main(Probe::GetClassSchema());
  const Counter anywhere(SchemaObject::GetClassSchema(), CreationObserver::kAnyThread);
  std::vector<std::unique_ptr<Counter>> late;
  std::array<std::vector<RefPtr<Probe>>, kWorkers> built;
  {
    Workers workers(kWorkers, [&](int number) {
      const NotificationDeferrer deferrer;
      for (int i = 0; i < kObjects; ++i)
        built[static_cast<std::size_t>(number)].push_back(Probe::Make(QString::number(i)));
    });
    workers.Finish([&] {
      const Counter brief(Probe::GetClassSchema());
      if (late.size() < 20)
        late.push_back(
            std::make_unique<Counter>(Probe::GetClassSchema(), CreationObserver::kAnyThread));
      EXPECT_EQ(0, brief.seen);
    });
    EXPECT_EQ(0, main.seen); // the objects aren't the main thread's yet
    EXPECT_EQ(nullptr, SchemaObject::find("http://a/b.kml", "0"));
    EXPECT_EQ(kWorkers * kObjects, anywhere.seen);
  }
  EXPECT_EQ(kWorkers * kObjects, main.seen);
  EXPECT_EQ(kWorkers * kObjects, anywhere.seen);
  EXPECT_TRUE(SchemaObject::find("http://a/b.kml", "0"));
}

TEST_F(CoreThreadTest, ChangesOnAllThreadsAreNumberedOnceEach) {
  class Revisions final : public ObjectObserver {
  public:
    using ObjectObserver::ObjectObserver;
    void OnFieldChanged(const FieldChangedEvent& event) override {
      seen.push_back(event.object.GetRevision());
    }
    void OnPreDelete(const PreDeleteEvent&) override {}
    std::vector<std::uint32_t> seen;
  };
  std::array<std::vector<std::uint32_t>, kWorkers> revisions;
  Workers(kWorkers, [&](int number) {
    const auto probe = Probe::Make();
    Revisions listener(*probe);
    for (int i = 1; i <= kObjects; ++i)
      ProbeSchema::GetSingleton().count.SetTypedObject(*probe, i % 2);
    revisions[static_cast<std::size_t>(number)] = listener.seen;
  });
  std::vector<std::uint32_t> all;
  for (const auto& own : revisions) {
    EXPECT_EQ(static_cast<std::size_t>(kObjects), own.size());
    EXPECT_TRUE(std::is_sorted(own.begin(), own.end()));
    all.insert(all.end(), own.begin(), own.end());
  }
  std::sort(all.begin(), all.end());
  EXPECT_EQ(all.end(), std::adjacent_find(all.begin(), all.end()));
}

} // namespace vorrel::kestan
