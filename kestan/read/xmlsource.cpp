#include "kestan/read/xmlsource.h"

#include <algorithm>
#include <cstring>

namespace vorrel::kestan {

int MemoryXmlSource::Read(char* buffer, int size) {
  const std::size_t count = std::min(static_cast<std::size_t>(size), size_ - position_);
  if (count)
    std::memcpy(buffer, data_ + position_, count);
  position_ += count;
  return static_cast<int>(count);
}

bool MemoryXmlSource::Rewind() {
  position_ = 0;
  return true;
}

int FileXmlSource::Read(char* buffer, int size) {
  return static_cast<int>(file_.read(buffer, size));
}

} // namespace vorrel::kestan
