#pragma once

#include <cstddef>

namespace bench {

// What the program holds on the heap, of all that goes through `malloc` and its kin, Qt's and
// expat's part too. Sizes are those of the allocator's blocks, its header included. A program
// counts when `heap.cpp` is linked into it, and has one thread then.

std::size_t GetHeapSize();
/// The most since the last `ResetHeapPeak`.
std::size_t GetHeapPeak();
void ResetHeapPeak();
/// The block that an allocation of `size` bytes takes.
std::size_t GetBlockSize(std::size_t size);

} // namespace bench
