#include "kestan/overlay/abstractoverlay.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/overlay/abstractoverlayschema.h"

namespace vorrel::kestan {

template class SchemaT<AbstractOverlay, NoInstancePolicy, NoDerivedPolicy>;

AbstractOverlaySchema::AbstractOverlaySchema()
    : SchemaT("AbstractOverlay", &AbstractFeature::GetClassSchema(), Namespace::kKml) {}

const Schema& AbstractOverlay::GetClassSchema() { return AbstractOverlaySchema::GetSingleton(); }

AbstractOverlay::AbstractOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractFeature(schema, id, baseUrl) {}

AbstractOverlay::~AbstractOverlay() = default;

void AbstractOverlay::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
