#pragma once

#include "kestan/core/schemat.h"
#include "kestan/geometry/track.h"

namespace vorrel::kestan {

class KESTAN_EXPORT TrackSchema final : public SchemaT<Track, NoInstancePolicy, NoDerivedPolicy> {
public:
  TrackSchema();
};

extern template class SchemaT<Track, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
