#pragma once

#include "kestan/host/export.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vorrel {

/// A heap. There is one, the process heap: a well-kept general allocator serves objects of all
/// lifetimes better than several of our own would, and any thread may free what another made.
///
/// The manager stays a parameter of whatever makes objects, so that a client can say where they
/// are meant to live, and a second heap could come without touching a caller.
class KESTAN_EXPORT MemoryManager {
public:
  MemoryManager(const MemoryManager&) = delete;
  MemoryManager& operator=(const MemoryManager&) = delete;

  /// Memory for `size` bytes, aligned for any object. Throws `std::bad_alloc` when there is none.
  void* allocate(std::size_t size);
  /// Gives back what `allocate` gave. Null is allowed.
  void free(void* memory);

  /// The heap from which the memory came.
  static MemoryManager* GetManager(const void* memory);

private:
  friend class HeapManager;
  constexpr MemoryManager() = default;
};

/// The heaps by the lifetime that a caller expects. All of them answer the process heap.
class KESTAN_EXPORT HeapManager {
public:
  /// For what lives from the library's start to its stop.
  static MemoryManager* GetStaticHeap() { return &s_process_heap_; }
  /// For the objects of documents.
  static MemoryManager* GetDynamicHeap() { return &s_process_heap_; }
  /// For jobs, messages and the contexts of worker threads.
  static MemoryManager* GetTransientHeap() { return &s_process_heap_; }

private:
  static MemoryManager s_process_heap_;
};

/// Memory from `manager`; null means the dynamic heap.
KESTAN_EXPORT void* doNew(std::size_t size, MemoryManager* manager);
/// Frees what `doNew` gave, whatever the manager was. Null is allowed.
KESTAN_EXPORT void doDelete(void* memory);
/// Changes the size of memory that `doNew` gave, keeping `oldSize` or `newSize` bytes, whichever
/// are fewer. The memory may move; null counts as a block of no bytes.
KESTAN_EXPORT void* Realloc(void* memory, std::size_t oldSize, std::size_t newSize,
                            MemoryManager* manager);

/// The process heap under the names that low-level code uses.
namespace globalnew {
inline void* GlobalNew(std::size_t size) { return doNew(size, nullptr); }
inline void GlobalDelete(void* memory) { doDelete(memory); }
} // namespace globalnew

/// Allocator and vector on a heap. With the one process heap both are the standard ones.
template <class T> using mmallocator = std::allocator<T>;
template <class T> using mmvector = std::vector<T, mmallocator<T>>;

/// Base of classes whose objects can be made on a given heap: `new (manager) T(...)`.
///
/// Empty, and without virtual functions, so that it adds no byte to a derived class.
class MemoryObject {
public:
  static void* operator new(std::size_t size) { return doNew(size, nullptr); }
  static void* operator new(std::size_t size, MemoryManager* manager) {
    return doNew(size, manager);
  }
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* memory) { doDelete(memory); }
  static void operator delete(void* memory, MemoryManager*) { doDelete(memory); }
  static void operator delete(void*, void*) noexcept {}
};

} // namespace vorrel

// Made on a heap, an object of a class that isn't a `MemoryObject` would take the heap's own place.
void* operator new(std::size_t, vorrel::MemoryManager*) = delete;
void* operator new[](std::size_t, vorrel::MemoryManager*) = delete;
