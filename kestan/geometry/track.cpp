#include "kestan/geometry/track.h"

#include "kestan/core/objarrayfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/geometry/trackschema.h"

namespace vorrel::kestan {

template class SchemaT<Track, NoInstancePolicy, NoDerivedPolicy>;
template class ObjArrayField<Track>;

TrackSchema::TrackSchema() : SchemaT("Track", &Geometry::GetClassSchema(), Namespace::kExt) {}

const Schema& Track::GetClassSchema() { return TrackSchema::GetSingleton(); }

} // namespace vorrel::kestan
