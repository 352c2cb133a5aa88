#include "kestan/core/threadscope.h"
#include "kestan/geometry/geometrycounter.h"
#include "kestan/spacetime/timestamp.h"
#include "tests/support/kmltest.h"
#include "tests/support/treecompare.h"

#include <pthread.h>

#include <functional>

namespace vorrel::kestan {

using DeepNestingTest = KmlTest;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kFramesAreLarge = true; // guards around each variable take most of the stack
#else
constexpr bool kFramesAreLarge = false;
#endif

/// Runs a function on a thread with a stack of this size.
void RunOnStack(std::size_t size, const std::function<void()>& function) {
  pthread_attr_t attributes;
  ASSERT_EQ(0, pthread_attr_init(&attributes));
  ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, size));
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    const ThreadScope scope;
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(
      0, pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&function)));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

QByteArray Nested(const QByteArray& name, int levels, const QByteArray& inner) {
  return ("<" + name + ">").repeated(levels) + inner + ("</" + name + ">").repeated(levels);
}

} // namespace

TEST_F(DeepNestingTest, TheDeepestDocumentIsReadWrittenAndDroppedOnASmallStack) {
  RunOnStack((kFramesAreLarge ? 4096 : 512) * 1024, [this] {
    for (const char* name : {"Folder", "Document", "MultiGeometry"}) {
      SCOPED_TRACE(name);
      EXPECT_NE("", Write(*ReadObject(Nested(name, 999, "<x/>"))));
      // A failure behind the innermost end: the clean-up meets all that has been built.
      EXPECT_FALSE(ReadObject("<Folder>" + Nested(name, 998, "") + "</Holder>"));
    }
  });
}

TEST_F(DeepNestingTest, NoWalkOverflowsASmallStack) {
#ifdef NDEBUG
  constexpr bool kIsOptimised = !kFramesAreLarge;
#else
  constexpr bool kIsOptimised = false;
#endif
  constexpr int kDepth = 995; // the reader's limit of 1,000 holds for the root and the leaf too
  for (const char* element : {"Folder", "Document"}) {
    SCOPED_TRACE(element);
    RunOnStack((kIsOptimised ? 512 : 16 * 1024) * 1024, [&] {
      const auto top = Read<AbstractFolder>(
          Nested(element, kDepth, "<Placemark><name>leaf</name><Point/></Placemark>"));
      AbstractFeature* leaf = top.get();
      for (int i = 0; i < kDepth; ++i)
        leaf = static_cast<AbstractFolder*>(leaf)->GetChild(0);
      ASSERT_EQ("leaf", leaf->GetName());

      top->SetVisibility(false);
      EXPECT_FALSE(leaf->isVisible());
      leaf->EnsureVisible();
      EXPECT_TRUE(leaf->isVisible());
      const RefPtr<TimeStamp> time(new TimeStamp(KmlId(), QString()));
      top->SetTimePrimitive(time.get());
      EXPECT_EQ(time.get(), leaf->GetInheritedTime());
      top->SetTimePrimitive(nullptr);

      GeometryCounter counter;
      counter.CountGeometry(*top);
      mmvector<SchemaObject*> points;
      top->GetElementsBySchema("Point", points);
      top->GetElementsBySchema("Nothing", points);
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
