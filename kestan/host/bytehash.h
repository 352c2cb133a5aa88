#pragma once

#include "kestan/host/export.h"

#include <QString>

#include <cstdint>

namespace vorrel {

/// Where a chain of `ByteHash` calls starts.
constexpr std::uint32_t kByteHashSeed = 0x12345678;

/// Folds the UTF-16 units of one string into the hash value `h`, and answers the new value. A
/// string of no units changes the value too, so that two strings hash unlike their joint text.
KESTAN_EXPORT std::uint32_t ByteHash(const ushort* units, int count, std::uint32_t h);

inline std::uint32_t ByteHash(const QString& text, std::uint32_t h) {
  return ByteHash(text.utf16(), static_cast<int>(text.size()), h);
}

/// Hash function of the keys of a `HashMap`; to be specialised for a key type.
template <class K> struct hash;

template <> struct hash<QString> {
  std::uint32_t operator()(const QString& text) const { return ByteHash(text, kByteHashSeed); }
};

/// The low bits of an address are those of its alignment, so the high ones are folded in.
template <class T> struct hash<T*> {
  std::uint32_t operator()(const T* pointer) const {
    std::uint64_t bits = reinterpret_cast<std::uintptr_t>(pointer);
    bits *= 0x9E3779B97F4A7C15;
    return static_cast<std::uint32_t>(bits >> 32);
  }
};

} // namespace vorrel
