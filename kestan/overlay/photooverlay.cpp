#include "kestan/overlay/photooverlay.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/overlay/photooverlayschema.h"

namespace vorrel::kestan {

template class SchemaT<PhotoOverlay, NoInstancePolicy, NoDerivedPolicy>;

PhotoOverlaySchema::PhotoOverlaySchema()
    : SchemaT("PhotoOverlay", &AbstractOverlay::GetClassSchema(), Namespace::kKml) {}

const Schema& PhotoOverlay::GetClassSchema() { return PhotoOverlaySchema::GetSingleton(); }

PhotoOverlay::PhotoOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractOverlay(schema, id, baseUrl) {}

PhotoOverlay::~PhotoOverlay() = default;

void PhotoOverlay::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
