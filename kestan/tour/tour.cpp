#include "kestan/tour/tour.h"

#include "kestan/core/schemat_impl.h"
#include "kestan/feature/featurevisitor.h"
#include "kestan/tour/tourschema.h"

namespace vorrel::kestan {

template class SchemaT<Tour, NoInstancePolicy, NoDerivedPolicy>;

TourSchema::TourSchema() : SchemaT("Tour", &AbstractFeature::GetClassSchema(), Namespace::kExt) {}

const Schema& Tour::GetClassSchema() { return TourSchema::GetSingleton(); }

Tour::Tour(const Schema& schema, const KmlId& id, const QString& baseUrl)
    : AbstractFeature(schema, id, baseUrl) {}

Tour::~Tour() = default;

void Tour::accept(FeatureVisitor& visitor) { visitor.visit(*this); }

} // namespace vorrel::kestan
