#include "kestan/core/threadcontext.h"
#include "kestan/feature/document.h"
#include "kestan/feature/folder.h"
#include "kestan/feature/placemark.h"
#include "kestan/geometry/geometrycounter.h"
#include "tests/feature/faketime.h"
#include "tests/support/kmltest.h"
#include "tests/support/treecompare.h"

#include <pthread.h>

#include <functional>

namespace vorrel::kestan {

using DeepNestingTest = KmlTest;

namespace {

constexpr int kDepth = 995; // the reader's limit of 1,000 holds for the root and the leaf too

/// Runs a function on a thread with little stack. Sanitizers enlarge frames, so that they get more.
void RunOnSmallStack(const std::function<void()>& function) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(NDEBUG)
  constexpr std::size_t kStackSize = 16 * 1024 * 1024;
#else
  constexpr std::size_t kStackSize = 512 * 1024;
#endif
  pthread_attr_t attributes;
  ASSERT_EQ(0, pthread_attr_init(&attributes));
  ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, kStackSize));
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    ThreadContext context;
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(
      0, pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&function)));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

QByteArray Nested(const char* element) {
  const QByteArray name(element);
  return "<kml>" + QByteArray("<" + name + ">").repeated(kDepth) +
         "<Placemark><name>leaf</name><Point/></Placemark>" +
         QByteArray("</" + name + ">").repeated(kDepth) + "</kml>";
}

} // namespace

TEST_F(DeepNestingTest, NoWalkOverflowsASmallStack) {
  for (const char* element : {"Folder", "Document"}) {
    SCOPED_TRACE(element);
    RunOnSmallStack([&] {
      const auto top = Read<AbstractFolder>(Nested(element));
      ASSERT_TRUE(top);
      AbstractFeature* leaf = top.get();
      for (int i = 0; i < kDepth; ++i)
        leaf = static_cast<AbstractFolder*>(leaf)->GetChild(0);
      ASSERT_EQ("leaf", leaf->GetName());

      top->SetVisibility(false);
      EXPECT_FALSE(leaf->isVisible());
      leaf->EnsureVisible();
      EXPECT_TRUE(leaf->isVisible());
      const RefPtr<FakeTime> time(new FakeTime("2007"));
      top->SetTimePrimitive(time.get());
      EXPECT_EQ(time.get(), leaf->GetInheritedTime());
      top->SetTimePrimitive(nullptr);

      GeometryCounter counter;
      counter.CountGeometry(*top);
      mmvector<SchemaObject*> points;
      top->GetElementsBySchema("Point", points);
      EXPECT_EQ(1U, points.size());

      const QString text = Write(*top);
      EXPECT_TRUE(text.contains("<name>leaf</name>"));
      const RefPtr<SchemaObject> clone = top->clone(true, nullptr);
      EXPECT_EQ(text, Write(*clone));
      clone->copy(*top, true, nullptr);
      EXPECT_EQ(text, Write(*clone));

      top->SetInheritedShouldNotifySubFieldChanged(true);
      const std::uint32_t revision = top->GetRevision();
      leaf->SetName("other");
      EXPECT_NE(revision, top->GetRevision());
    });
  }
}

} // namespace vorrel::kestan
