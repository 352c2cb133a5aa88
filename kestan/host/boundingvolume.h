#pragma once

namespace vorrel {

/// Something that the client draws, or looks at.
struct BoundingVolume {
  /// How a volume lies to what is in sight.
  enum Result { kInside = 0, kOutside = 1, kIntersects = 2 };
};

} // namespace vorrel
