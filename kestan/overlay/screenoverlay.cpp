#include "kestan/overlay/screenoverlay.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/overlay/screenoverlayschema.h"

namespace vorrel::kestan {

template class SchemaT<ScreenOverlay, NoInstancePolicy, NoDerivedPolicy>;

ScreenOverlaySchema::ScreenOverlaySchema()
    : SchemaT("ScreenOverlay", &AbstractOverlay::GetClassSchema(), Namespace::kKml) {}

const Schema& ScreenOverlay::GetClassSchema() { return ScreenOverlaySchema::GetSingleton(); }

ScreenOverlay::ScreenOverlay(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractOverlay(schema, id, baseUrl) {}

ScreenOverlay::~ScreenOverlay() = default;

void ScreenOverlay::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
