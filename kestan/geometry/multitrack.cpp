#include "kestan/geometry/multitrack.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/multitrackschema.h"

namespace vorrel::kestan {

template class SchemaT<MultiTrack, NoInstancePolicy, NoDerivedPolicy>;

MultiTrackSchema::MultiTrackSchema()
    : SchemaT("MultiTrack", &MultiGeometry::GetClassSchema(), Namespace::kExt) {}

const Schema& MultiTrack::GetClassSchema() { return MultiTrackSchema::GetSingleton(); }

} // namespace vorrel::kestan
