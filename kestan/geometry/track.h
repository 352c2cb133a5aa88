#pragma once

#include "kestan/geometry/geometry.h"

namespace vorrel::kestan {

class TrackSchema;

/// A shape that moves: times, positions and orientations. Without instances so far: documents keep
/// the element as it stands.
class KESTAN_EXPORT Track : public Geometry {
public:
  using ClassSchema = TrackSchema;
  static const Schema& GetClassSchema();
};

} // namespace vorrel::kestan
