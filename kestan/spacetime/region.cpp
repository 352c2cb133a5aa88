#include "kestan/spacetime/region.h"

#include "kestan/core/objfield_impl.h"
#include "kestan/core/schemat_impl.h"
#include "kestan/spacetime/regionschema.h"

namespace vorrel::kestan {

template class SchemaT<Region, NoInstancePolicy, NoDerivedPolicy>;
template class ObjField<Region>;

RegionSchema::RegionSchema() : SchemaT("Region", nullptr, Namespace::kKml) {}

const Schema& Region::GetClassSchema() { return RegionSchema::GetSingleton(); }

Region::Region(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : SchemaObject(schema, id, baseUrl) {}

Region::~Region() = default;

} // namespace vorrel::kestan
