// Prints what trees occupy: bytes of one Placemark with a name and a Point, bytes of one tuple of
// a long coordinate list, and the peak of a parse against what the tree then holds.
//
// Every allocation of the process goes through the counting functions below, Qt's and expat's
// too. Sizes are those of the allocator's blocks, its header included.

#include "bench/documents.h"
#include "bench/subject.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include <malloc.h>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

// Single-threaded program: plain counters.
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

namespace {

using namespace bench;

struct Held {
  std::size_t tree; ///< What the tree holds when the parse is over.
  std::size_t peak; ///< Most that was held at a time during the parse.
};

Held Measure(const Subject& subject, const std::string& text) {
  const std::size_t before = g_current;
  g_peak = before;
  const Subject::Tree tree = subject.Read(text);
  return {g_current - before, g_peak - before};
}

/// Block of a string's characters: header of Qt's array, two bytes a character and the final null.
std::size_t TextBlock(std::size_t characters) {
  void* block = __libc_malloc(24 + 2 * (characters + 1));
  const std::size_t size = BlockSize(block);
  __libc_free(block);
  return size;
}

void Print(const char* name, const Document& document, const Held& held) {
  std::printf("%-24s %10.1f MB text %10.1f MB tree %10.1f MB peak   peak/tree %.2f (target 2.00)\n",
              name, static_cast<double>(document.text.size()) / 1e6,
              static_cast<double>(held.tree) / 1e6, static_cast<double>(held.peak) / 1e6,
              static_cast<double>(held.peak) / static_cast<double>(held.tree));
}

} // namespace

int main() {
  const Subject subject;
  subject.Read(MakePoints(10).text); // what is made once stays out of the figures

  constexpr std::size_t kPoints = 200000;
  const Document points = MakePoints(kPoints);
  const Held pointsHeld = Measure(subject, points.text);
  const double each = static_cast<double>(pointsHeld.tree) / static_cast<double>(kPoints);
  const std::size_t name = TextBlock(std::strlen("Point 000000"));
  std::printf(
      "Placemark with name and Point: %.0f bytes, of which %zu are its text; beyond it %.0f "
      "(target 560)\n",
      each, name, each - static_cast<double>(name));

  const Document lines = MakeDocument(Kind::kCoordinates, 32U << 20U, 20000);
  const Held linesHeld = Measure(subject, lines.text);
  std::printf("tuple of a long list: %.2f bytes (target %.1f)\n",
              static_cast<double>(linesHeld.tree) / static_cast<double>(lines.tuples), 24 * 1.1);

  Print("points", points, pointsHeld);
  Print("coordinates", lines, linesHeld);
  for (const Kind kind : {Kind::kPlacemarks, Kind::kMix}) {
    const Document document = MakeDocument(kind, 32U << 20U);
    Print(Name(kind), document, Measure(subject, document.text));
  }
  return 0;
}
