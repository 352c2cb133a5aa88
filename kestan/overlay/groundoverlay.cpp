#include "kestan/overlay/groundoverlay.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/overlay/groundoverlayschema.h"

namespace vorrel::kestan {

template class SchemaT<GroundOverlay, NoInstancePolicy, NoDerivedPolicy>;

GroundOverlaySchema::GroundOverlaySchema()
    : SchemaT("GroundOverlay", &AbstractOverlay::GetClassSchema(), Namespace::kKml) {}

const Schema& GroundOverlay::GetClassSchema() { return GroundOverlaySchema::GetSingleton(); }

GroundOverlay::GroundOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractOverlay(schema, id, baseUrl) {}

GroundOverlay::~GroundOverlay() = default;

void GroundOverlay::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
