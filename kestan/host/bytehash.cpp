#include "kestan/host/bytehash.h"

namespace vorrel {

namespace {

constexpr std::uint32_t kMultiplier = 0x5BD1E995;

std::uint32_t Fold(std::uint32_t h, std::uint32_t word) {
  word *= kMultiplier;
  word ^= word >> 24;
  word *= kMultiplier;
  return (h * kMultiplier) ^ word;
}

std::uint32_t Finish(std::uint32_t h) {
  h ^= h >> 13;
  h *= kMultiplier;
  return h ^ (h >> 15);
}

/// Two units as a word, the first one in the low half.
std::uint32_t Word(const ushort* units) {
  return units[0] | (static_cast<std::uint32_t>(units[1]) << 16);
}

} // namespace

std::uint32_t ByteHash(const ushort* units, int count, std::uint32_t h) {
  if (count <= 2) {
    const std::uint32_t word = count == 0 ? 0U : count == 1 ? units[0] : Word(units);
    return Finish(Fold(h, word));
  }
  h = Finish(Fold(h, units[0]));
  int i = 1;
  for (; i + 1 < count; i += 2)
    h = Fold(h, Word(units + i));
  if (i < count)
    h = (h ^ units[i]) * kMultiplier;
  return Finish(h);
}

} // namespace vorrel
