#pragma once

#include <cstdint>

namespace vorrel::kestan {

/// What becomes of content that no schema understands.
enum class UnknownContent : std::uint8_t {
  kAsSet,   ///< It's kept unless the options say otherwise.
  kKept,    ///< It's the content proper, which is kept as text and reported to nobody.
  kLeftOut, ///< The object was there before, and has content of its own.
};

} // namespace vorrel::kestan
