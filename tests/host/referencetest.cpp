#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

#include <gtest/gtest.h>

#include <utility>

using namespace vorrel;

namespace {

class Counted : public AtomicReferent {
public:
  explicit Counted(int* alive) : alive_(alive) { ++*alive_; }
  ~Counted() override { --*alive_; }

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
  RefPtr<Counted> base = derived;
  EXPECT_TRUE(base == derived);
  EXPECT_EQ(2, base->GetRefCount());
  RefPtr<const Counted> moved = std::move(derived);
  EXPECT_EQ(nullptr, derived.get());
  EXPECT_EQ(2, base->GetRefCount());
  base = base.get();
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
