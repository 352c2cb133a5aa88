#pragma once

#include "kestan/geometry/multigeometry.h"

namespace vorrel::kestan {

class MultiTrackSchema;

/// A collection of tracks. Without instances so far: documents keep the element as it stands.
class KESTAN_EXPORT MultiTrack : public MultiGeometry {
public:
  using ClassSchema = MultiTrackSchema;
  static const Schema& GetClassSchema();
};

} // namespace vorrel::kestan
