#include "kestan/core/notificationdeferrer.h"
#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"
#include "tests/support/observers.h"
#include "tests/support/workers.h"

#include <algorithm>
#include <array>

namespace vorrel::kestan {

using CoreThreadTest = KmlTest;

namespace {

constexpr int kWorkers = 3;
constexpr int kObjects = 200;

} // namespace

TEST_F(CoreThreadTest, ObserversOfAClassComeAndGoWhileWorkersBuild) {
  const OnCreate main(Probe::GetClassSchema());
  const OnCreate anywhere(SchemaObject::GetClassSchema(), CreationObserver::kAnyThread);
  std::vector<std::unique_ptr<OnCreate>> late;
  std::array<std::vector<RefPtr<Probe>>, kWorkers> built;
  {
    Workers workers(kWorkers, [&](int number) {
      const NotificationDeferrer deferrer;
      for (int i = 0; i < kObjects; ++i)
        built[static_cast<std::size_t>(number)].push_back(Probe::Make(QString::number(i)));
    });
    workers.Finish([&] {
      const OnCreate brief(Probe::GetClassSchema());
      if (late.size() < 20)
        late.push_back(
            std::make_unique<OnCreate>(Probe::GetClassSchema(), CreationObserver::kAnyThread));
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

} // namespace vorrel::kestan
