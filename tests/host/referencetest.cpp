#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

#include <gtest/gtest.h>

#include <utility>

using namespace vorrel;

namespace {

struct Node : Referent {
  RefPtr<Node> next;
};

struct Bare : AtomicReferent {
  int tail;
};
static_assert(sizeof(Bare) == 16, "a small member goes behind the count");
static_assert(sizeof(RefPtr<Bare>) == sizeof(void*));

} // namespace

TEST(RefPtrTest, AssignmentSurvivesTheEndOfWhatHeldTheNewObject) {
  RefPtr<Node> head(new Node);
  head->next = new Node;
  Node* const second = head->next.get();
  head = head->next; // ends the first node, which held the reference that is being copied
  EXPECT_EQ(second, head.get());
  head = second; // to itself
  EXPECT_EQ(1, head->GetRefCount());
  const RefPtr<const Referent> moved = std::move(head);
  EXPECT_FALSE(head);
  EXPECT_EQ(1, moved->GetRefCount());
}
