#include "kestan/host/memory.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

using namespace vorrel;

namespace {

class Counted : public MemoryObject, public AtomicReferent {
public:
  explicit Counted(int* alive) : alive_(alive) { ++*alive_; }
  ~Counted() override { --*alive_; }

  int tail = 0;

private:
  int* alive_;
};

class Derived final : public Counted {
public:
  using Counted::Counted;
};

struct Node : Referent {
  RefPtr<Node> next;
};

struct Bare : AtomicReferent {
  int tail;
};
static_assert(sizeof(Bare) == 16, "a small member goes behind the count");
static_assert(sizeof(RefPtr<Bare>) == sizeof(void*));

} // namespace

TEST(RefPtrTest, TheLastReferenceEndsTheObject) {
  int alive = 0;
  RefPtr<Derived> derived(new Derived(&alive));
  EXPECT_EQ(1, derived->GetRefCount());
  RefPtr<Counted> base = derived;
  EXPECT_TRUE(base == derived);
  EXPECT_EQ(2, base->GetRefCount());
  RefPtr<const Counted> moved = std::move(derived);
  EXPECT_EQ(nullptr, derived.get());
  EXPECT_EQ(2, base->GetRefCount());
  base = base.get();
  EXPECT_EQ(2, base->GetRefCount());
  base.reset();
  EXPECT_EQ(1, alive);
  moved = nullptr;
  EXPECT_EQ(0, alive);
}

TEST(RefPtrTest, AssignmentSurvivesTheEndOfWhatHeldTheNewObject) {
  RefPtr<Node> head(new Node);
  head->next = new Node;
  Node* const second = head->next.get();
  head = head->next; // ends the first node, which held the reference that is being copied
  EXPECT_EQ(second, head.get());
  EXPECT_EQ(1, head->GetRefCount());
}

TEST(ReferentTest, CountsAcrossThreads) {
  int alive = 0;
  RefPtr<Counted> object(new Counted(&alive));
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([object] {
      for (int j = 0; j < 10000; ++j) {
        const RefPtr<Counted> copy(object);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  threads.clear();
  EXPECT_EQ(1, object->GetRefCount());
  object.reset();
  EXPECT_EQ(0, alive);
}

TEST(MemoryTest, ObjectsAndBlocksComeFromAnyOfTheHeaps) {
  int alive = 0;
  for (MemoryManager* const heap :
       {HeapManager::GetStaticHeap(), HeapManager::GetDynamicHeap(),
        HeapManager::GetTransientHeap(), static_cast<MemoryManager*>(nullptr)}) {
    const RefPtr<Counted> object(new (heap) Counted(&alive));
    EXPECT_EQ(HeapManager::GetDynamicHeap(), MemoryManager::GetManager(object.get()));
    char* block = static_cast<char*>(doNew(3, heap));
    block[2] = 'z';
    block = static_cast<char*>(Realloc(block, 3, 1000, heap));
    EXPECT_EQ('z', block[2]);
    doDelete(block);
  }
  EXPECT_EQ(0, alive);
}
