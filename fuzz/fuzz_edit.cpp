// Bytes to edits of objects of every class, by every operation of every field, while observers
// drop, move and change any object at any notice: whatever happens, nothing that's gone is touched,
// and every child stands in one place, of which it knows.

#include "fuzz/editworld.h"
#include "fuzz/support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Start();
  fuzz::EditWorld world(data, size);
  world.Run();
  return 0;
}
