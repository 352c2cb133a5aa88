#pragma once

#include <array>

namespace vorrel {

/// A byte as a URL escapes it: "%" and two upper-case hexadecimal digits.
constexpr std::array<char, 3> HexEncode(unsigned char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {'%', kDigits[byte >> 4], kDigits[byte & 15]};
}

} // namespace vorrel
