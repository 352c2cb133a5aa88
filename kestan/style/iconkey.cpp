#include "kestan/style/iconkey.h"

#include "kestan/host/bytehash.h"

namespace vorrel::kestan {

std::uint32_t IconKey::MakeHash() const {
  std::uint32_t result = ByteHash(text, kByteHashSeed);
  for (const std::int32_t number : {h, w, y, x}) {
    const auto bits = static_cast<std::uint32_t>(number);
    const ushort units[] = {static_cast<ushort>(bits), static_cast<ushort>(bits >> 16)};
    result = ByteHash(units, 2, result);
  }
  return result;
}

} // namespace vorrel::kestan
