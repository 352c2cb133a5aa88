#include "bench/heap.h"

#include <algorithm>
#include <cerrno>

#include <malloc.h>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

std::size_t g_current = 0;
std::size_t g_peak = 0;

void Raise(std::size_t bytes) {
  g_current += bytes;
  g_peak = std::max(g_peak, g_current);
}

std::size_t BlockSize(void* block) {
  return block ? malloc_usable_size(block) + sizeof(std::size_t) : 0;
}

} // namespace

extern "C" {

void* malloc(std::size_t size) {
  void* block = __libc_malloc(size);
  Raise(BlockSize(block));
  return block;
}

void* calloc(std::size_t count, std::size_t size) {
  void* block = __libc_calloc(count, size);
  Raise(BlockSize(block));
  return block;
}

void* realloc(void* old, std::size_t size) {
  const std::size_t former = BlockSize(old);
  void* block = __libc_realloc(old, size);
  if (block || size == 0) {
    // A block that moved was there twice while its bytes were copied, but for the huge ones,
    // whose pages are remapped.
    if (block != old && former < (128U << 10U)) {
      Raise(BlockSize(block));
      g_current -= former;
    } else {
      g_current -= former;
      Raise(BlockSize(block));
    }
  }
  return block;
}

void* memalign(std::size_t alignment, std::size_t size) {
  void* block = __libc_memalign(alignment, size);
  Raise(BlockSize(block));
  return block;
}

void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = memalign(alignment, size);
  return *block ? 0 : ENOMEM;
}

void free(void* block) {
  g_current -= BlockSize(block);
  __libc_free(block);
}

} // extern "C"

namespace bench {

std::size_t GetHeapSize() { return g_current; }

std::size_t GetHeapPeak() { return g_peak; }

void ResetHeapPeak() { g_peak = g_current; }

std::size_t GetBlockSize(std::size_t size) {
  void* block = __libc_malloc(size);
  const std::size_t taken = BlockSize(block);
  __libc_free(block);
  return taken;
}

} // namespace bench
