#include "kestan/host/memory.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace vorrel {

MemoryManager HeapManager::s_process_heap_;

void* MemoryManager::allocate(std::size_t size) { return ::operator new(size); }

void MemoryManager::free(void* memory) { ::operator delete(memory); }

MemoryManager* MemoryManager::GetManager(const void*) { return HeapManager::GetDynamicHeap(); }

void* doNew(std::size_t size, MemoryManager* manager) {
  return (manager ? manager : HeapManager::GetDynamicHeap())->allocate(size);
}

void doDelete(void* memory) { MemoryManager::GetManager(memory)->free(memory); }

void* Realloc(void* memory, std::size_t oldSize, std::size_t newSize, MemoryManager* manager) {
  void* const moved = doNew(newSize, manager);
  if (memory) {
    std::memcpy(moved, memory, std::min(oldSize, newSize));
    doDelete(memory);
  }
  return moved;
}

} // namespace vorrel
