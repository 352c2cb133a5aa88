#pragma once

#include "kestan/core/schemat.h"
#include "kestan/geometry/multitrack.h"

namespace vorrel::kestan {

class KESTAN_EXPORT MultiTrackSchema final
    : public SchemaT<MultiTrack, NoInstancePolicy, NoDerivedPolicy> {
public:
  MultiTrackSchema();
};

extern template class SchemaT<MultiTrack, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
