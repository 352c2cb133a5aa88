#pragma once

#include <cstddef>
#include <string>

namespace bench {

enum class Kind {
  kPlacemarks,  ///< Points with a name, a description and a shared style.
  kCoordinates, ///< Lines with long coordinate lists.
  kMix,         ///< Nested folders with points, lines and polygons, marked-up descriptions.
};

const char* Name(Kind kind);

struct Document {
  std::string text;
  std::size_t objects = 0; ///< Features and geometries.
  std::size_t tuples = 0;  ///< Positions in all coordinate lists.
};

/// A document of about `bytes` bytes, the same at every call. `tuples` is the length of each list
/// of `kCoordinates`.
Document MakeDocument(Kind kind, std::size_t bytes, int tuples = 5000);

/// `count` placemarks with a name of 12 characters and a point, and nothing else.
Document MakePoints(std::size_t count);

} // namespace bench
