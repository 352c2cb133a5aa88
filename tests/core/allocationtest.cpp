// Counts what is allocated by way of operator new, the library's objects and lists among it.

#include "tests/core/probeschema.h"
#include "tests/support/kmltest.h"
#include "tests/support/observers.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int t_allocations = 0;

} // namespace

void* operator new(std::size_t size) {
  ++t_allocations;
  if (void* const block = std::malloc(size))
    return block;
  throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  ++t_allocations;
  return std::malloc(size);
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace vorrel::kestan {

using AllocationTest = KmlTest;

TEST_F(AllocationTest, AFieldChangeAllocatesNothing) {
  const ProbeSchema& fields = ProbeSchema::GetSingleton();
  struct Case {
    int owners;
    bool reports; // to the owners
    bool isObserved;
    bool isTopObserved;
    int heard; // with each change
  };
  const Case cases[] = {{0, false, false, false, 0}, {0, true, true, false, 1},
                        {1, false, false, true, 0},  {1, true, false, false, 0},
                        {10, true, false, false, 0}, {10, true, true, true, 2}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.owners << " owners, heard " << c.heard);
    const auto leaf = Probe::Make();
    std::vector<RefPtr<Probe>> owners;
    const Probe* child = leaf.get();
    for (int i = 0; i < c.owners; ++i) {
      owners.push_back(Probe::Make());
      fields.child.set(*owners.back(), const_cast<Probe*>(child), 0);
      child = owners.back().get();
    }
    for (const RefPtr<Probe>& probe : owners)
      probe->SetBit(kBitNotifySubField, c.reports);
    leaf->SetBit(kBitNotifySubField, c.reports);
    leaf->SetBit(kBitInheritedNotifySubField, c.reports);
    int heard = 0;
    const auto listen = [&](const Field&) { ++heard; };
    const OnChange own(c.isObserved ? leaf.get() : nullptr, listen);
    const OnChange top(c.isTopObserved ? owners.back().get() : nullptr, listen);
    fields.count.SetTypedObject(*leaf, 1); // what the first dispatch makes is kept
    heard = 0;

    const int before = t_allocations;
    fields.count.SetTypedObject(*leaf, 2);
    EXPECT_EQ(before, t_allocations);
    EXPECT_EQ(c.heard, heard);
    EXPECT_EQ(c.reports && c.owners > 0,
              !owners.empty() && owners.back()->GetRevision() == leaf->GetRevision());
  }
  const int before = t_allocations;
  Probe::Make();
  EXPECT_LT(before, t_allocations); // the count counts
}

} // namespace vorrel::kestan
